#include "bench/load/HugeRegions.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace tavrel::bench {
namespace {

constexpr std::size_t kHugePage = std::size_t{1} << 21;
constexpr std::size_t kRegion = std::size_t{64} << 20;
constexpr std::size_t kAlignment = 16;

struct Region {
  void* start;
  std::size_t bytes;
};

std::vector<Region> regions;
char* nextPiece = nullptr;
std::size_t left = 0;

constexpr std::size_t RoundUp(std::size_t bytes, std::size_t unit) {
  return (bytes + unit - 1) / unit * unit;
}

// What is left of the former region is lost; only the pages that it never touched, which cost
// nothing.
bool AddRegion(std::size_t bytes) noexcept {
  const std::size_t mapped = RoundUp(std::max(bytes, kRegion), kHugePage) + kHugePage;
  void* start = mmap(nullptr, mapped, PROT_READ | PROT_WRITE,
                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (start == MAP_FAILED) return false;
#if defined(MADV_HUGEPAGE)
  madvise(start, mapped, MADV_HUGEPAGE);
#endif
  regions.push_back({start, mapped});
  const auto address = reinterpret_cast<std::uintptr_t>(start);
  const std::size_t skipped = RoundUp(address, kHugePage) - address;
  nextPiece = static_cast<char*>(start) + skipped;
  left = mapped - skipped;
  return true;
}

}  // namespace

void* TakeHuge(std::size_t bytes) noexcept {
  const std::size_t size = RoundUp(bytes, kAlignment);
  if (size > left && !AddRegion(size)) return nullptr;
  char* piece = nextPiece;
  nextPiece += size;
  left -= size;
  return piece;
}

void ReleaseAllHuge() noexcept {
  for (const Region& region : regions) munmap(region.start, region.bytes);
  regions.clear();
  nextPiece = nullptr;
  left = 0;
}

}  // namespace tavrel::bench
