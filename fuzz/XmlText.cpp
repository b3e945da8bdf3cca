// Decoding of XML references: as the literal form decodes, into a buffer of every size.
#include <algorithm>
#include <memory>
#include <string>

#include "agent/Exports.h"
#include "fuzz/FuzzTarget.h"
#include "tests/reference/LiteralXmlText.h"

using tavrel::fuzz::Require;

namespace {

void Compare(const std::string& source, std::size_t size) {
  // Blocks of just that size, so that a sanitizer sees what is written behind them.
  const auto expected = std::make_unique<char[]>(size);
  const auto decoded = std::make_unique<char[]>(size);
  const auto room = static_cast<std::int32_t>(size);
  const std::int32_t length =
      tavrel::reference::LiteralXmlText(expected.get(), room).Decode(source.c_str());
  Require(RestoreXMLEscChar(decoded.get(), source.c_str(), room) == length,
          "The length is another");
  Require(std::equal(expected.get(), expected.get() + size, decoded.get()), "The text is another");
}

// The first byte is the size of a small buffer.
void DecodeText(std::string_view input) {
  if (input.empty()) return;
  const std::string source(input.substr(1, input.find('\0', 1) - 1));
  Compare(source, source.size() + 1);
  Compare(source, static_cast<unsigned char>(input[0]));
}

const tavrel::fuzz::Target xmlTextTarget("xml_text", DecodeText);

}  // namespace
