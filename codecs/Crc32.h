// The checksum of a gzip stream.
#pragma once

#include <cstdint>
#include <string_view>

#include "system/Processor.h"

namespace tavrel {

// Whether Crc32() is much faster than the compression library's own checksum on this machine.
[[nodiscard]] bool IsCrc32Fast() noexcept;

// CRC-32 as gzip, zip and PNG have it.
// set: a supported one.
[[nodiscard]] std::uint32_t Crc32(std::string_view bytes,
                                  system::InstructionSet set = system::WidestSet()) noexcept;

}  // namespace tavrel
