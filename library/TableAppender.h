// The growth rule of the library's pointer tables: an array with a capacity and a count beside it
// that starts empty; when the count has reached the capacity, the capacity rises by 32.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "system/Memory.h"

namespace tavrel {

// Appends to a table for the time of one call. In that time the block behind the array grows
// geometrically, so that many appends stay cheap; afterwards it has the size that the capacity
// states.
template <class Record>
class TableAppender {
 public:
  TableAppender(Record**& array, std::int32_t& capacity, std::int32_t& count) noexcept
      : array_(array), capacity_(capacity), count_(count), slots_(capacity) {}
  TableAppender(const TableAppender&) = delete;
  TableAppender& operator=(const TableAppender&) = delete;
  ~TableAppender() {
    if (slots_ > capacity_) (void)Resize(capacity_);
  }

  // Makes room for one more record. False, with nothing changed, when memory is exhausted.
  [[nodiscard]] bool Reserve() noexcept {
    if (count_ < capacity_) return true;
    const std::int32_t grown = capacity_ + kStep;
    if (grown > slots_ && !Resize(std::max(grown, slots_ * 2))) return false;
    capacity_ = grown;
    return true;
  }

  // Reserve() must have made the room.
  void Append(Record* record) noexcept { array_[count_++] = record; }

 private:
  static constexpr std::int32_t kStep = 32;

  bool Resize(std::int32_t slots) noexcept {
    void* block = system::Reallocate(array_, static_cast<std::size_t>(slots) * sizeof(Record*));
    if (block == nullptr) return false;
    array_ = static_cast<Record**>(block);
    slots_ = slots;
    return true;
  }

  Record**& array_;
  std::int32_t& capacity_;
  std::int32_t& count_;
  std::int32_t slots_;
};

}  // namespace tavrel
