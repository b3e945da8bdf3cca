// Base64: every set of instructions gives what the model gives, in both directions, and what was encoded comes
// back.
#include <cstdint>
#include <string>

#include "codecs/Base64Coding.h"
#include "fuzz/FuzzTarget.h"
#include "tests/reference/Base64Model.h"
#include "tests/support/InstructionSets.h"

using tavrel::fuzz::Require;

namespace {

// The first two bytes are a line length as well, shifted by the third so that huge ones come too.
std::uint32_t LineLengthOf(std::string_view input) {
  if (input.size() < 3) return 0;
  const auto byte = [input](std::size_t at) { return static_cast<unsigned char>(input[at]); };
  return static_cast<std::uint32_t>(byte(0) | byte(1) << 8) << byte(2) % 17;
}

void CodeBase64(std::string_view input) {
  const std::string expected = tavrel::test::ModelDecode(std::string(input));
  const std::uint32_t lineLength = LineLengthOf(input);
  const std::string encoded = tavrel::test::ModelEncode(input, lineLength);

  for (const tavrel::system::InstructionSet set : tavrel::test::SetsForBase64()) {
    Require(tavrel::DecodeBase64(input, set).view() == expected, "Decoding differs");
    Require(tavrel::EncodeBase64(input, lineLength, set) == encoded, "Encoding differs");
    Require(tavrel::DecodeBase64(encoded, set).view() == input, "Other bytes come back");
  }
}

const tavrel::fuzz::Target base64Target("base64", CodeBase64);

}  // namespace
