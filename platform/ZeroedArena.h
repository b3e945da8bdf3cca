// Zero-filled memory in pieces that are released all at once: a few large blocks, which grow from
// 64 KB to 64 MB, behind the many small records of a document or a table.
#pragma once

#include <cstddef>

#include "platform/Memory.h"

namespace tavrel::platform {

// A plain record, so that it can stand in zero-filled memory: all zero is an empty arena.
class ZeroedArena {
 public:
  // `bytes` zero bytes, aligned for any record; null when memory is exhausted.
  [[nodiscard]] void* Take(std::size_t bytes) noexcept {
    const std::size_t size = (bytes + kAlignment - 1) / kAlignment * kAlignment;
    if (size > left_ && !AddBlock(size)) return nullptr;
    char* piece = next_;
    next_ += size;
    left_ -= size;
    return piece;
  }

  // Whether `address` lies in memory of the arena.
  [[nodiscard]] bool Holds(const void* address) const noexcept;

  // Releases every piece; the arena is empty afterwards and can be used again.
  void ReleaseAll() noexcept;

 private:
  static constexpr std::size_t kAlignment = 16;
  struct BlockHeader;

  bool AddBlock(std::size_t bytes) noexcept;

  BlockHeader* newest_ = nullptr;
  char* next_ = nullptr;
  std::size_t left_ = 0;
  std::size_t lastBlockBytes_ = 0;
};

}  // namespace tavrel::platform
