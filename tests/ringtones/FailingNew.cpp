// operator new that fails where the library's own allocations do, for the program that links this.
#include <cstdlib>
#include <new>

#include "platform/Memory.h"

void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  return tavrel::platform::AllocationAllowed() ? std::malloc(bytes == 0 ? 1 : bytes) : nullptr;
}
void* operator new(std::size_t bytes) {
  void* block = operator new(bytes, std::nothrow);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
