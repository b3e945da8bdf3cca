#include "bench/pass/ResidentMemory.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "system/Memory.h"

namespace {

using tavrel::system::ZeroedBlock;

constexpr std::size_t kMappedFrom = std::size_t{1} << 20;
constexpr std::size_t kHugePage = std::size_t{1} << 21;

std::vector<ZeroedBlock> released;
std::vector<ZeroedBlock> ready;

ZeroedBlock TakeReady(std::size_t bytes) noexcept {
  const auto fits = [=](const ZeroedBlock& block) { return block.mappedBytes == bytes; };
  const auto found = std::find_if(ready.begin(), ready.end(), fits);
  if (found == ready.end()) return {};
  const ZeroedBlock block = *found;
  ready.erase(found);
  return block;
}

ZeroedBlock MapBlock(std::size_t bytes) noexcept {
  void* pages = mmap(nullptr, bytes + kHugePage, PROT_READ | PROT_WRITE,
                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (pages == MAP_FAILED) return {};
  const auto start = reinterpret_cast<std::uintptr_t>(pages);
  char* address = static_cast<char*>(pages) + (kHugePage - start % kHugePage) % kHugePage;
#if defined(MADV_HUGEPAGE)
  madvise(address, bytes, MADV_HUGEPAGE);
#endif
  return {address, bytes};
}

}  // namespace

namespace tavrel::bench {

void ZeroReleasedBlocks() noexcept {
  for (const ZeroedBlock& block : released) {
    std::memset(block.address, 0, block.mappedBytes);
    ready.push_back(block);
  }
  released.clear();
}

}  // namespace tavrel::bench

namespace tavrel::system {

bool AllocationAllowed() noexcept {
  return true;
}

void* Allocate(std::size_t bytes) noexcept {
  return std::malloc(bytes);
}

void* AllocateZeroed(std::size_t bytes) noexcept {
  return std::calloc(1, bytes);
}

void* Reallocate(void* block, std::size_t bytes) noexcept {
  return std::realloc(block, bytes);
}

void Release(void* block) noexcept {
  std::free(block);
}

ZeroedBlock AllocateBlock(std::size_t bytes) noexcept {
  if (bytes < kMappedFrom) return {static_cast<char*>(AllocateZeroed(bytes)), 0};
  const ZeroedBlock block = TakeReady(bytes);
  return block.address != nullptr ? block : MapBlock(bytes);
}

void ReleaseBlock(ZeroedBlock& block) noexcept {
  if (block.mappedBytes > 0) {
    released.push_back(block);
  } else {
    Release(block.address);
  }
  block = {};
}

void TrimBlock(ZeroedBlock&, std::size_t) noexcept {}

}  // namespace tavrel::system
