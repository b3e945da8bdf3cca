// Zero-filled memory in pieces that are released all at once: a few large blocks, which grow from
// 64 KB to 64 MB, behind the many small records of a document or a table.
#pragma once

#include <cstddef>
#include <cstdint>

#include "system/Memory.h"

namespace tavrel::system {

// A plain record, so that it can stand in zero-filled memory: all zero is an empty arena.
class ZeroedArena {
 public:
  // `bytes` zero bytes, aligned for pointers and 64-bit numbers; null when memory is exhausted.
  [[nodiscard]] void* Take(std::size_t bytes) noexcept {
    const std::size_t size = (bytes + kAlignment - 1) / kAlignment * kAlignment;
    if (size > left_ && !AddBlock(size)) return nullptr;
    char* piece = next_;
    next_ += size;
    left_ -= size;
    return piece;
  }

  // Takes what the next `bytes` bytes are taken from in one block, if memory allows: only a wish,
  // which makes the last block end where the pieces end. The few pieces that may still come after
  // it take no larger a block than they would have without it.
  void Reserve(std::size_t bytes) noexcept;

  // Whether `address` lies in memory of the arena.
  [[nodiscard]] bool Holds(const void* address) const noexcept;

  // Releases every piece; the arena is empty afterwards and can be used again.
  void ReleaseAll() noexcept;
  // Leaves every piece allocated for good, to whoever knows of it; the arena is empty afterwards.
  void Abandon() noexcept { *this = {}; }

 private:
  static constexpr std::size_t kAlignment = alignof(std::uint64_t);
  struct BlockHeader;

  bool AddBlock(std::size_t bytes) noexcept;
  bool AddBlockOf(std::size_t blockBytes) noexcept;

  BlockHeader* newest_ = nullptr;
  char* next_ = nullptr;
  std::size_t left_ = 0;
  std::size_t lastBlockBytes_ = 0;
};

}  // namespace tavrel::system
