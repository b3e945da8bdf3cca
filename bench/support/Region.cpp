#include "bench/support/Region.h"

#include <sys/mman.h>

#include <new>

namespace tavrel::bench {

Region::Region(std::size_t size, Pages pages) : size_(size) {
  if (pages == Pages::kHuge) {
    block_ = system::AllocateBlock(size);
    if (block_.address == nullptr) throw std::bad_alloc();
    return;
  }
  void* address = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (address == MAP_FAILED) throw std::bad_alloc();
#if defined(MADV_NOHUGEPAGE)
  madvise(address, size, MADV_NOHUGEPAGE);
#endif
  block_ = {static_cast<char*>(address), size};
}

Region::~Region() {
  system::ReleaseBlock(block_);
}

void Region::Touch() {
  constexpr std::size_t kPage = 4096;  // nowhere are they smaller
  auto* bytes = static_cast<volatile char*>(data());
  for (std::size_t at = 0; at < size_; at += kPage) bytes[at] = 1;
}

}  // namespace tavrel::bench
