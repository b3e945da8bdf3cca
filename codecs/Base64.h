// NSDataAdditions: base64 over byte buffers, with the standard alphabet and '=' as padding.
// Operations keep no state and may run on any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "system/ByteBuffer.h"

namespace tavrel {

// The base64 text of `bytes`; an empty buffer, or none, gives the empty text. May throw
// std::bad_alloc.
// lineLength: a line feed follows every line, also the last one when it is full. Groups of four
//             characters stay together: lines have the next multiple of four. 0, and any length
//             above 32,764, means no line breaks.
[[nodiscard]] std::string base64EncodingWithLineLength(const system::ByteBuffer& bytes,
                                                       std::uint32_t lineLength);

// The same without line breaks.
[[nodiscard]] std::string base64Encoding(const system::ByteBuffer& bytes);

// The bytes of a base64 text; none only when memory is exhausted. Nothing is an error:
// - every character outside the alphabet is skipped, but a character outside ASCII anywhere makes
//   the result empty, and so does no text at all;
// - the first '=' ends the text. One or two characters of a group before it give one byte, three
//   give two. (Kept: the two lower bits of the byte that stands for a single character are those of
//   the first byte of the group before, or zero.)
// - a last group without its '=' is dropped.
[[nodiscard]] system::ByteBuffer initWithBase64EncodedString(
    const std::optional<std::string>& text) noexcept;

// The same; handles release themselves, so that there is nothing to defer.
[[nodiscard]] system::ByteBuffer dataWithBase64EncodedString(
    const std::optional<std::string>& text) noexcept;

}  // namespace tavrel
