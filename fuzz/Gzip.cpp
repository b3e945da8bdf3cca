// Gzip: a stream is judged as by the model, and what was deflated comes back.
#include "codecs/Gzip.h"

#include "fuzz/FuzzTarget.h"
#include "tests/reference/GzipModel.h"

using tavrel::fuzz::Require;
using tavrel::system::ByteBuffer;

namespace {

void CodeGzip(std::string_view bytes) {
  constexpr std::size_t kLongest = 65536;  // a stream may become a thousand times longer
  if (bytes.empty() || bytes.size() > kLongest) return;
  const ByteBuffer input = ByteBuffer::Copy(bytes);

  const auto expected = tavrel::test::ModelInflate(input.view());
  const ByteBuffer inflated = tavrel::gzipInflate(input);
  Require(static_cast<bool>(inflated) == expected.has_value(), "The stream is judged differently");
  if (expected) Require(inflated.view() == *expected, "Inflating differs");

  const ByteBuffer deflated = tavrel::gzipDeflate(input);
  Require(tavrel::gzipInflate(deflated).view() == input.view(), "Other bytes come back");
}

const tavrel::fuzz::Target gzipTarget("gzip", CodeGzip);

}  // namespace
