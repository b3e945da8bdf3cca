// Persistent IDs: read as the literal form reads them, and nothing written for a text that is none.
#include <array>
#include <string>
#include <vector>

#include "agent/Exports.h"
#include "fuzz/FuzzTarget.h"
#include "tests/reference/LiteralPersistentId.h"

using tavrel::fuzz::Require;

namespace {

void ReadPersistentIds(std::string_view input) {
  const std::string text(input.substr(0, input.find('\0')));
  std::array<std::uint8_t, 8> expected{1, 2, 3, 4, 5, 6, 7, 8};
  std::array<std::uint8_t, 8> bytes = expected;
  const std::int32_t result =
      tavrel::reference::ReadPersistentIdLiterally(text.c_str(), expected.data());
  // In a block of just its size, so that a sanitizer notices a read behind it.
  const std::vector<char> block(text.c_str(), text.c_str() + text.size() + 1);
  Require(PersistentId2Buf(block.data(), bytes.data()) == result, "The result is another");
  Require(bytes == expected, "The bytes are others");
}

const tavrel::fuzz::Target persistentIdsTarget("persistent_ids", ReadPersistentIds);

}  // namespace
