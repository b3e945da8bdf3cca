#include "codecs/Base64.h"

#include <string_view>

#include "codecs/Base64Coding.h"

namespace tavrel {

using system::ByteBuffer;

std::string base64EncodingWithLineLength(const ByteBuffer& bytes, std::uint32_t lineLength) {
  return EncodeBase64(bytes.view(), lineLength, system::WidestSet());
}

std::string base64Encoding(const ByteBuffer& bytes) {
  return base64EncodingWithLineLength(bytes, 0);
}

ByteBuffer initWithBase64EncodedString(const std::optional<std::string>& text) noexcept {
  return DecodeBase64(text ? std::string_view(*text) : std::string_view(), system::WidestSet());
}

ByteBuffer dataWithBase64EncodedString(const std::optional<std::string>& text) noexcept {
  return initWithBase64EncodedString(text);
}

}  // namespace tavrel
