#include "system/HugePages.h"

#include <sys/mman.h>

#include <cstdint>

namespace tavrel::system {

#if defined(MADV_HUGEPAGE)

void PreferHugePages(const void* address, std::size_t bytes) noexcept {
  constexpr std::uintptr_t kHugePage = std::uintptr_t{1} << 21;
  // Below, the faults are not worth a call that may split a mapping of the heap for good.
  constexpr std::size_t kWorthwhile = 4 * kHugePage;
  if (bytes < kWorthwhile) return;

  // Only huge pages that lie inside as a whole: what stands beside belongs to others.
  const auto start = reinterpret_cast<std::uintptr_t>(address);
  const std::uintptr_t first = (start + kHugePage - 1) / kHugePage * kHugePage;
  const std::uintptr_t last = (start + bytes) / kHugePage * kHugePage;
  madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
}

#else

void PreferHugePages(const void*, std::size_t) noexcept {}

#endif

}  // namespace tavrel::system
