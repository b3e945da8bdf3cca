// Rows of text that wait until it is known which columns come behind theirs.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "system/ZeroedArena.h"

namespace tavrel::host {

class HeldRows {
 public:
  struct Row {
    std::string_view text;
    std::size_t columns;  // that it has
  };

  HeldRows() = default;
  HeldRows(const HeldRows&) = delete;
  HeldRows& operator=(const HeldRows&) = delete;
  ~HeldRows() { memory_.ReleaseAll(); }

  // Keeps a copy of the text.
  void Add(std::string_view text, std::size_t columns);

  [[nodiscard]] const std::vector<Row>& All() const noexcept { return rows_; }
  // Of the texts, in bytes.
  [[nodiscard]] std::size_t Size() const noexcept { return size_; }

 private:
  system::ZeroedArena memory_{};
  std::vector<Row> rows_;
  std::size_t size_ = 0;
};

}  // namespace tavrel::host
