#include "system/ZeroedArena.h"

#include <algorithm>
#include <cstdint>
#include <new>

namespace tavrel::system {
namespace {

constexpr std::size_t kFirstBlock = std::size_t{64} << 10;
// In few steps: blocks that are smaller than a huge page cost a fault for each small one.
constexpr std::size_t kGrowth = 8;
constexpr std::size_t kLargestBlock = std::size_t{64} << 20;

}  // namespace

// Stands at the start of each block and leads to the block before it.
struct ZeroedArena::BlockHeader {
  ZeroedBlock block;
  std::size_t bytes;
  BlockHeader* previous;
};

// Growth is only a wish: where it finds no memory, a block of the first size may still.
bool ZeroedArena::AddBlock(std::size_t bytes) noexcept {
  const std::size_t needed = bytes + sizeof(BlockHeader);
  const std::size_t least = std::max(kFirstBlock, needed);
  std::size_t size = std::clamp(lastBlockBytes_ * kGrowth, least, std::max(kLargestBlock, needed));
  bool added = AddBlockOf(size);
  if (!added && size > least) {
    size = least;
    added = AddBlockOf(size);
  }
  if (added) lastBlockBytes_ = size;
  return added;
}

bool ZeroedArena::AddBlockOf(std::size_t blockBytes) noexcept {
  const ZeroedBlock block = AllocateBlock(blockBytes);
  if (block.address == nullptr) return false;
  newest_ = new (block.address) BlockHeader{block, blockBytes, newest_};
  next_ = block.address + sizeof(BlockHeader);
  left_ = blockBytes - sizeof(BlockHeader);
  return true;
}

void ZeroedArena::Reserve(std::size_t bytes) noexcept {
  if (bytes > left_) (void)AddBlockOf(bytes + sizeof(BlockHeader));
}

bool ZeroedArena::Holds(const void* address) const noexcept {
  const auto place = reinterpret_cast<std::uintptr_t>(address);
  for (const BlockHeader* header = newest_; header != nullptr; header = header->previous) {
    if (place - reinterpret_cast<std::uintptr_t>(header) < header->bytes) return true;
  }
  return false;
}

void ZeroedArena::ReleaseAll() noexcept {
  while (newest_ != nullptr) {
    ZeroedBlock block = newest_->block;
    newest_ = newest_->previous;
    ReleaseBlock(block);
  }
  *this = {};
}

}  // namespace tavrel::system
