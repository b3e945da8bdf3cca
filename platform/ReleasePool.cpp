#include "platform/ReleasePool.h"

#include <new>

#include "platform/Memory.h"

namespace tavrel::platform {

struct ReleasePool::Entry {
  void* block;
  Entry* previous;
};

void ReleasePool::Adopt(void* block) noexcept {
  if (block == nullptr) return;
  void* place = Allocate(sizeof(Entry));
  if (place == nullptr) {
    Release(block);
    return;
  }
  newest_ = new (place) Entry{block, newest_};
}

void ReleasePool::Drain() noexcept {
  while (newest_ != nullptr) {
    Entry* entry = newest_;
    newest_ = entry->previous;
    Release(entry->block);
    Release(entry);
  }
}

}  // namespace tavrel::platform
