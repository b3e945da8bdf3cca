// The functions that code whole groups of base64: EncodeBlocks and DecodeBlocks of Base64Blocks.h.
#pragma once

#include <cstddef>
#include <cstdint>

#include "codecs/Base64Blocks.h"

namespace tavrel {

// Group by group, on every machine.
std::size_t EncodeGroups(const std::uint8_t* bytes, std::size_t size, char* text) noexcept;
std::size_t DecodeGroups(const char* text, std::size_t size, std::size_t readable,
                         std::uint8_t* bytes) noexcept;

std::size_t EncodeAvx2(const std::uint8_t* bytes, std::size_t size, char* text) noexcept;
std::size_t DecodeAvx2(const char* text, std::size_t size, std::size_t readable,
                       std::uint8_t* bytes) noexcept;

}  // namespace tavrel
