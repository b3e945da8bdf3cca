#include "host/page/LargeHeap.h"

#include <cstddef>

#if defined(__GLIBC__)

#include <malloc.h>
#include <sys/mman.h>

#include <array>
#include <cstdint>
#include <cstdlib>

namespace tavrel::host {
namespace {

constexpr std::size_t kPage = 4096;
constexpr int kLargest = 32 << 20;  // that GNU's library lets stand in the heap
constexpr std::size_t kPiece = std::size_t{kLargest} - (std::size_t{1} << 20);

}  // namespace

void PreferHugePages() noexcept {
  mallopt(M_ARENA_MAX, 1);  // one heap for all threads
  mallopt(M_MMAP_THRESHOLD, kLargest);
  mallopt(M_TRIM_THRESHOLD, 8 * kLargest);
  // The heap grows by these, and keeps them when they are freed. Nobody has written to them, so they take no memory yet.
  std::array<void*, 2> pieces{std::malloc(kPiece), std::malloc(kPiece)};
  for (void* const piece : pieces) {
    if (piece == nullptr) continue;
    const auto start = (reinterpret_cast<std::uintptr_t>(piece) + kPage - 1) / kPage * kPage;
    madvise(reinterpret_cast<void*>(start), kPiece - kPage, MADV_HUGEPAGE);
  }
  for (void* const piece : pieces) std::free(piece);
}

}  // namespace tavrel::host

#else

namespace tavrel::host {

void PreferHugePages() noexcept {}

}  // namespace tavrel::host

#endif
