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

// Memory that is there already, on huge pages where the system has them.
class ResidentRegion : public Region {
 public:
  explicit ResidentRegion(std::size_t size) : Region(size, Pages::kHuge) { Touch(); }
};

// Touches that much memory and gives it back, in this process: after a fork every page of ours would
// have to be taken over again. Otherwise as WarmMemory.
inline void WarmMemoryHere(std::size_t size) {
  const ResidentRegion touched(size);
}

}  // namespace tavrel::bench
