#include "tests/fault/AllocationCount.h"

#include <sys/mman.h>

#include <cstdlib>
#include <ostream>

#include "tests/fault/FaultPlan.h"

using tavrel::test::CallKind;
using tavrel::test::HeldMemory;
using tavrel::test::NextCallFails;

namespace {

constinit HeldMemory held;

}  // namespace

namespace tavrel::test {

HeldMemory Held() noexcept {
  return ::held;
}

void PrintTo(const HeldMemory& memory, std::ostream* stream) {
  *stream << memory.blocks << " blocks and " << memory.mappedBytes << " mapped bytes";
}

}  // namespace tavrel::test

// The names are those that the linker gives to a wrapped function and to the original.
extern "C" {

void* __real_malloc(std::size_t bytes);
void* __real_calloc(std::size_t count, std::size_t bytes);
void* __real_realloc(void* block, std::size_t bytes);
void __real_free(void* block);
void* __real_mmap(void* address, std::size_t bytes, int protection, int flags, int file, off_t at);
int __real_munmap(void* address, std::size_t bytes);

void* __wrap_malloc(std::size_t bytes);
void* __wrap_calloc(std::size_t count, std::size_t bytes);
void* __wrap_realloc(void* block, std::size_t bytes);
void __wrap_free(void* block);
void* __wrap_mmap(void* address, std::size_t bytes, int protection, int flags, int file, off_t at);
int __wrap_munmap(void* address, std::size_t bytes);

void* __wrap_malloc(std::size_t bytes) {
  if (NextCallFails(CallKind::Memory)) return nullptr;
  void* block = __real_malloc(bytes);
  held.blocks += block != nullptr ? 1 : 0;
  return block;
}

void* __wrap_calloc(std::size_t count, std::size_t bytes) {
  if (NextCallFails(CallKind::Memory)) return nullptr;
  void* block = __real_calloc(count, bytes);
  held.blocks += block != nullptr ? 1 : 0;
  return block;
}

void* __wrap_realloc(void* block, std::size_t bytes) {
  if (NextCallFails(CallKind::Memory)) return nullptr;
  void* grown = __real_realloc(block, bytes);
  held.blocks += block == nullptr && grown != nullptr ? 1 : 0;
  return grown;
}

void __wrap_free(void* block) {
  held.blocks -= block != nullptr ? 1 : 0;
  __real_free(block);
}

void* __wrap_mmap(void* address, std::size_t bytes, int protection, int flags, int file, off_t at) {
  if (NextCallFails(CallKind::Memory)) return MAP_FAILED;
  void* pages = __real_mmap(address, bytes, protection, flags, file, at);
  if (pages != MAP_FAILED) held.mappedBytes += static_cast<std::ptrdiff_t>(bytes);
  return pages;
}

int __wrap_munmap(void* address, std::size_t bytes) {
  const int result = __real_munmap(address, bytes);
  if (result == 0) held.mappedBytes -= static_cast<std::ptrdiff_t>(bytes);
  return result;
}

}  // extern "C"
