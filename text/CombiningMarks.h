// Combining marks, which are put into their canonical order before they are written.
#pragma once

#include <utf8proc.h>

#include <cstddef>
#include <cstdint>

#include "system/Memory.h"

namespace tavrel::text {

struct CombiningMark {
  utf8proc_int32_t point;
  std::uint8_t combiningClass;
};

// The combining marks behind a character, as many as there are.
class CombiningMarks {
 public:
  CombiningMarks() noexcept = default;
  CombiningMarks(const CombiningMarks&) = delete;
  CombiningMarks& operator=(const CombiningMarks&) = delete;
  ~CombiningMarks() { system::Release(block_); }

  [[nodiscard]] bool Append(CombiningMark mark) noexcept {
    if (count_ == capacity_ && !Grow()) return false;
    marks_[count_++] = mark;
    return true;
  }

  // Puts the marks into their canonical order: by combining class, equal ones as they stand. Linear
  // also for megabytes of marks. False when memory is exhausted.
  [[nodiscard]] bool Order() noexcept;

  void Clear() noexcept { count_ = 0; }
  [[nodiscard]] std::size_t size() const noexcept { return count_; }
  [[nodiscard]] const CombiningMark* begin() const noexcept { return marks_; }
  [[nodiscard]] const CombiningMark* end() const noexcept { return marks_ + count_; }

 private:
  static constexpr std::size_t kFew = 64;

  bool Grow() noexcept;
  void OrderFew() noexcept;

  CombiningMark few_[kFew];
  CombiningMark* marks_ = few_;
  void* block_ = nullptr;  // none while the few suffice
  std::size_t count_ = 0;
  std::size_t capacity_ = kFew;
};

}  // namespace tavrel::text
