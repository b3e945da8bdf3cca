// The checksum of a gzip stream.
#pragma once

#include <cstdint>
#include <string_view>

namespace tavrel {

// Whether Crc32() is much faster than the compression library's own checksum on this machine.
[[nodiscard]] bool IsCrc32Fast() noexcept;

// CRC-32 as gzip, zip and PNG have it.
[[nodiscard]] std::uint32_t Crc32(std::string_view bytes) noexcept;
// The same a byte at a time; what Crc32() is compared with.
[[nodiscard]] std::uint32_t PlainCrc32(std::string_view bytes) noexcept;

}  // namespace tavrel
