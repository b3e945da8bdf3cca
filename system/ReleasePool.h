// Deferred release: memory that is handed over stays allocated until the pool is drained.
#pragma once

namespace tavrel::system {

// A plain record: all zero is an empty pool.
class ReleasePool {
 public:
  // Takes over a block of the malloc family; null is allowed. False when there is no memory left to
  // remember the block by: it is released at once then.
  bool Adopt(void* block) noexcept;
  void Drain() noexcept;

 private:
  struct Entry;
  Entry* newest_ = nullptr;
};

}  // namespace tavrel::system
