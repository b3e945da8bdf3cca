// The functions that make the checksum.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tavrel {

// What remains of `rest` and the bytes behind it, a byte at a time.
std::uint32_t ContinueCrc32(std::uint32_t rest, std::string_view bytes) noexcept;

// The whole checksum of that many bytes at least.
std::uint32_t Crc32Carryless(std::string_view bytes) noexcept;
inline constexpr std::size_t kLeastForCarryless = 64;

}  // namespace tavrel
