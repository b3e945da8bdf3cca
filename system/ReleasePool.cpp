#include "system/ReleasePool.h"

#include <new>

#include "system/Memory.h"

namespace tavrel::system {

struct ReleasePool::Entry {
  void* block;
  Entry* previous;
};

bool ReleasePool::Adopt(void* block) noexcept {
  if (block == nullptr) return true;
  void* place = Allocate(sizeof(Entry));
  if (place == nullptr) {
    Release(block);
    return false;
  }
  newest_ = new (place) Entry{block, newest_};
  return true;
}

void ReleasePool::Drain() noexcept {
  while (newest_ != nullptr) {
    Entry* entry = newest_;
    newest_ = entry->previous;
    Release(entry->block);
    Release(entry);
  }
}

}  // namespace tavrel::system
