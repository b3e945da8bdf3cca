#include "platform/ZeroedArena.h"

#include <algorithm>
#include <new>

namespace tavrel::platform {
namespace {

constexpr std::size_t kFirstBlock = std::size_t{64} << 10;
// In few steps: blocks that are smaller than a huge page cost a fault for each small one.
constexpr std::size_t kGrowth = 8;
constexpr std::size_t kLargestBlock = std::size_t{64} << 20;

}  // namespace

// Stands at the start of each block and leads to the block before it.
struct alignas(16) ZeroedArena::BlockHeader {
  ZeroedBlock block;
  BlockHeader* previous;
};

bool ZeroedArena::AddBlock(std::size_t bytes) noexcept {
  const std::size_t grown = std::clamp(lastBlockBytes_ * kGrowth, kFirstBlock, kLargestBlock);
  const std::size_t blockBytes = std::max(grown, bytes + sizeof(BlockHeader));
  const ZeroedBlock block = AllocateBlock(blockBytes);
  if (block.address == nullptr) return false;
  newest_ = new (block.address) BlockHeader{block, newest_};
  next_ = block.address + sizeof(BlockHeader);
  left_ = blockBytes - sizeof(BlockHeader);
  lastBlockBytes_ = blockBytes;
  return true;
}

void ZeroedArena::ReleaseAll() noexcept {
  while (newest_ != nullptr) {
    ZeroedBlock block = newest_->block;
    newest_ = newest_->previous;
    ReleaseBlock(block);
  }
  *this = {};
}

}  // namespace tavrel::platform
