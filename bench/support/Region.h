// Memory of a kind that a benchmark chooses.
#pragma once

#include <cstddef>

#include "system/Memory.h"

namespace tavrel::bench {

enum class Pages { kHuge, kSmall };

// Memory that nobody has touched yet.
class Region {
 public:
  Region(std::size_t size, Pages pages);
  ~Region();
  Region(const Region&) = delete;
  Region& operator=(const Region&) = delete;

  [[nodiscard]] system::ZeroedBlock block() const { return block_; }
  [[nodiscard]] char* data() const { return block_.address; }
  [[nodiscard]] std::size_t size() const { return size_; }
  void Touch();  // makes it resident

 private:
  std::size_t size_;
  system::ZeroedBlock block_;
};

}  // namespace tavrel::bench
