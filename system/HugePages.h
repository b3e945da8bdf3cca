// Huge pages for memory that somebody else allocated. (Blocks of system/Memory.h have them
// anyway.)
#pragma once

#include <cstddef>

namespace tavrel::system {

// Wishes for huge pages behind `bytes` bytes that are about to be written for the first time: a
// fault for each small page would take longer than the writing. Contents stay as they are; nothing
// happens for small pieces, and where the system has no such pages.
void PreferHugePages(const void* address, std::size_t bytes) noexcept;

}  // namespace tavrel::system
