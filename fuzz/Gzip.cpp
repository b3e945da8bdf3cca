// Gzip: a stream is judged as by the model, and what was deflated comes back.
#include "codecs/Gzip.h"

#include "fuzz/FuzzTarget.h"
#include "tests/reference/GzipModel.h"

using tavrel::fuzz::Require;
using tavrel::system::ByteBuffer;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kLongest = 65536;  // a stream may become a thousand times longer
  if (size == 0 || size > kLongest) return 0;
  const ByteBuffer input = ByteBuffer::Copy(tavrel::fuzz::AsText(data, size));

  const auto expected = tavrel::test::ModelInflate(input.view());
  const ByteBuffer inflated = tavrel::gzipInflate(input);
  Require(static_cast<bool>(inflated) == expected.has_value(), "The stream is judged differently");
  if (expected) Require(inflated.view() == *expected, "Inflating differs");

  const ByteBuffer deflated = tavrel::gzipDeflate(input);
  Require(tavrel::gzipInflate(deflated).view() == input.view(), "Other bytes come back");
  return 0;
}
