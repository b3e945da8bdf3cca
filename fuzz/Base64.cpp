// Base64: every set of instructions gives what the model gives, in both directions, and what was encoded comes
// back.
#include <string>

#include "codecs/Base64Coding.h"
#include "fuzz/FuzzTarget.h"
#include "tests/reference/Base64Model.h"
#include "tests/support/InstructionSets.h"

using tavrel::fuzz::Require;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input = tavrel::fuzz::AsText(data, size);
  const std::string expected = tavrel::test::ModelDecode(std::string(input));
  // The first two bytes are a line length as well, shifted by the third so that huge ones come too.
  std::uint32_t lineLength = 0;
  if (size >= 3) lineLength = (data[0] | static_cast<std::uint32_t>(data[1]) << 8) << data[2] % 17;
  const std::string encoded = tavrel::test::ModelEncode(input, lineLength);

  for (const tavrel::system::InstructionSet set : tavrel::test::SetsForBase64()) {
    Require(tavrel::DecodeBase64(input, set).view() == expected, "Decoding differs");
    Require(tavrel::EncodeBase64(input, lineLength, set) == encoded, "Encoding differs");
    Require(tavrel::DecodeBase64(encoded, set).view() == input, "Other bytes come back");
  }
  return 0;
}
