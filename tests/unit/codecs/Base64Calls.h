// Calls of the codec that check on the way that every path gives the same result.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "codecs/Base64.h"
#include "codecs/Base64Coding.h"

namespace tavrel::test {

inline std::vector<Base64Path> SupportedPaths() {
  std::vector<Base64Path> paths;
  for (const Base64Path path : {Base64Path::kPlain, Base64Path::kPortable, Base64Path::kAvx2}) {
    if (IsSupported(path)) paths.push_back(path);
  }
  return paths;
}

inline std::string Encoded(std::string_view bytes, std::uint32_t lineLength = 0) {
  std::string text = base64EncodingWithLineLength(system::ByteBuffer::Copy(bytes), lineLength);
  for (const Base64Path path : SupportedPaths()) {
    EXPECT_TRUE(EncodeBase64(bytes, lineLength, path) == text)
        << "path " << static_cast<int>(path) << ", " << bytes.size() << " bytes in lines of "
        << lineLength;
  }
  return text;
}

// Fails when there is no buffer, which is something else than an empty one.
inline std::string Decoded(const std::optional<std::string>& text) {
  const system::ByteBuffer bytes = initWithBase64EncodedString(text);
  EXPECT_TRUE(bytes);
  for (const Base64Path path : SupportedPaths()) {
    EXPECT_TRUE(DecodeBase64(text.value_or(""), path).view() == bytes.view())
        << "path " << static_cast<int>(path) << ", "
        << testing::PrintToString(text->substr(0, 400));
  }
  return std::string(bytes.view());
}

}  // namespace tavrel::test
