// The rules of base64 around the bulk: padding, line breaks, and what decoding skips. The set
// of instructions is a parameter so that tests can compare them all.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "codecs/Base64Blocks.h"
#include "system/ByteBuffer.h"

namespace tavrel {

// The text of `bytes`. Only groups of four characters stay together: lines have the next multiple
// of four of `lineLength`, and 0 or a length above 32,764 means no line breaks. May throw
// std::bad_alloc.
[[nodiscard]] std::string EncodeBase64(std::string_view bytes, std::uint32_t lineLength,
                                       system::InstructionSet set);

// The bytes of `text`; none when memory is exhausted.
[[nodiscard]] system::ByteBuffer DecodeBase64(std::string_view text,
                                              system::InstructionSet set) noexcept;

// The same into `bytes`, which has room for DecodingRoom() bytes.
// Result: how many bytes there are; nothing when the text holds a character outside ASCII.
[[nodiscard]] std::optional<std::size_t> DecodeBase64Into(std::uint8_t* bytes,
                                                          std::string_view text,
                                                          system::InstructionSet set) noexcept;
[[nodiscard]] constexpr std::size_t DecodingRoom(std::size_t textLength) noexcept {
  return textLength / 4 * 3 + kDecodeSlack;
}

}  // namespace tavrel
