// Asks the processor for memory that will be wanted soon.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tavrel::system {

// The place so many bytes behind (or, below zero, before) an address. Through a number: what lies there need not
// belong to the same array, nor be there at all.
[[nodiscard]] inline const void* PlaceAt(const void* from, std::ptrdiff_t bytes) noexcept {
  return reinterpret_cast<const void*>(reinterpret_cast<std::uintptr_t>(from) +
                                       static_cast<std::uintptr_t>(bytes));
}

inline void FetchToRead(const void* from, std::ptrdiff_t bytes = 0) noexcept {
  __builtin_prefetch(PlaceAt(from, bytes));
}

inline void FetchToWrite(const void* from, std::ptrdiff_t bytes = 0) noexcept {
  __builtin_prefetch(PlaceAt(from, bytes), 1);
}

}  // namespace tavrel::system
