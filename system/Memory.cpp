#include "system/Memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>

namespace tavrel::system {
namespace {

// From here on a block is worth a mapping of its own.
constexpr std::size_t kMappedFrom = std::size_t{1} << 20;
constexpr std::size_t kHugePage = std::size_t{1} << 21;

constinit std::atomic<bool> armed{false};
constinit std::atomic<bool> failOnce{false};
constinit std::atomic<std::int64_t> successesLeft{0};
constinit std::atomic<std::int64_t> asked{0};

constexpr std::size_t RoundUp(std::size_t bytes, std::size_t unit) {
  return (bytes + unit - 1) / unit * unit;
}

std::size_t PageSize() noexcept {
  return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

void* MapPages(std::size_t bytes) noexcept {
  // Not reserved: a block may be asked for at its largest possible size and filled only in part.
  constexpr int kFlags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE;
  void* pages = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, kFlags, -1, 0);
  return pages == MAP_FAILED ? nullptr : pages;
}

// Huge pages serve only whole, aligned stretches: map one huge page more and cut both ends off.
char* MapAligned(std::size_t bytes) noexcept {
  auto* start = static_cast<char*>(MapPages(bytes + kHugePage));
  if (start == nullptr) return nullptr;
  const std::size_t before = RoundUp(reinterpret_cast<std::uintptr_t>(start), kHugePage) -
                             reinterpret_cast<std::uintptr_t>(start);
  if (before > 0) munmap(start, before);
  munmap(start + before + bytes, kHugePage - before);
#if defined(MADV_HUGEPAGE)
  madvise(start + before, bytes, MADV_HUGEPAGE);  // a wish: refused, everything works, slower
#endif
  return start + before;
}

}  // namespace

namespace faults {

void FailAfter(std::int64_t successes, bool once) noexcept {
  asked = 0;
  successesLeft = successes;
  failOnce = once;
  armed = true;
}

void Stop() noexcept {
  armed = false;
}

std::int64_t Asked() noexcept {
  return asked;
}

}  // namespace faults

bool AllocationAllowed() noexcept {
  if (!armed.load(std::memory_order_relaxed)) [[likely]] {
    return true;
  }
  ++asked;
  const std::int64_t left = successesLeft--;
  return left > 0 || (left < 0 && failOnce);
}

void* Allocate(std::size_t bytes) noexcept {
  return AllocationAllowed() ? std::malloc(bytes) : nullptr;
}

void* AllocateZeroed(std::size_t bytes) noexcept {
  return AllocationAllowed() ? std::calloc(1, bytes) : nullptr;
}

void* Reallocate(void* block, std::size_t bytes) noexcept {
  return AllocationAllowed() ? std::realloc(block, bytes) : nullptr;
}

void Release(void* block) noexcept {
  std::free(block);
}

ZeroedBlock AllocateBlock(std::size_t bytes) noexcept {
  if (bytes < kMappedFrom) return {static_cast<char*>(AllocateZeroed(bytes)), 0};
  if (!AllocationAllowed()) return {};
  const std::size_t mapped = RoundUp(bytes, PageSize());
  char* address = MapAligned(mapped);
  return address == nullptr ? ZeroedBlock{} : ZeroedBlock{address, mapped};
}

void ReleaseBlock(ZeroedBlock& block) noexcept {
  if (block.mappedBytes > 0) {
    munmap(block.address, block.mappedBytes);
  } else {
    Release(block.address);
  }
  block = {};
}

void TrimBlock(ZeroedBlock& block, std::size_t bytes) noexcept {
  bytes = std::max<std::size_t>(bytes, 1);
  if (block.mappedBytes == 0) {
    void* smaller = Reallocate(block.address, bytes);
    if (smaller != nullptr) block.address = static_cast<char*>(smaller);
    return;
  }
  const std::size_t kept = RoundUp(bytes, PageSize());
  if (kept >= block.mappedBytes) return;
  munmap(block.address + kept, block.mappedBytes - kept);
  block.mappedBytes = kept;
}

}  // namespace tavrel::system
