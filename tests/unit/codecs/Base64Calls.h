// Calls of the codec that check on the way that every set of instructions gives the same result.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

#include "codecs/Base64.h"
#include "codecs/Base64Coding.h"
#include "tests/support/InstructionSets.h"

namespace tavrel::test {

inline std::string Encoded(std::string_view bytes, std::uint32_t lineLength = 0) {
  std::string text = base64EncodingWithLineLength(system::ByteBuffer::Copy(bytes), lineLength);
  for (const system::InstructionSet set : SetsForBase64()) {
    EXPECT_TRUE(EncodeBase64(bytes, lineLength, set) == text)
        << "set " << static_cast<int>(set) << ", " << bytes.size() << " bytes in lines of "
        << lineLength;
  }
  return text;
}

// Fails when there is no buffer, which is something else than an empty one.
inline std::string Decoded(const std::optional<std::string>& text) {
  const system::ByteBuffer bytes = initWithBase64EncodedString(text);
  EXPECT_TRUE(bytes);
  for (const system::InstructionSet set : SetsForBase64()) {
    EXPECT_TRUE(DecodeBase64(text.value_or(""), set).view() == bytes.view())
        << "set " << static_cast<int>(set) << ", " << testing::PrintToString(text->substr(0, 400));
  }
  return std::string(bytes.view());
}

}  // namespace tavrel::test
