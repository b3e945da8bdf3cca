// Persistent IDs: the 16 hexadecimal digits that name a library or a track. As text they stand in the
// library file and in artwork file names; everywhere else they are 8 bytes, in the order of the
// digits.
#pragma once

#include <cstdint>

namespace tavrel {

// Reads the first 16 characters of `text` and ignores the rest. A pair counts for its leading
// digits only ("7x" is 7, "x7" is 0), and takes neither blank nor sign.
// text:   NUL-terminated, borrowed; may be null.
// bytes:  room for 8 bytes, owned by the caller; untouched on failure.
// Result: 8, or 0 when `text` is null or shorter than 16 characters (or `bytes` is null).
std::int32_t ParsePersistentId(const char* text, std::uint8_t* bytes) noexcept;

}  // namespace tavrel
