#include "tests/fault/FailingNew.h"

#include <cstdlib>
#include <new>

namespace {

void* NewBlock(std::size_t bytes, std::size_t alignment) noexcept {
  if (tavrel::test::IsInsideLibrary() && !tavrel::system::AllocationAllowed()) return nullptr;
  // No type of the library asks for more alignment than malloc gives.
  if (alignment > alignof(std::max_align_t)) std::abort();
  return std::malloc(bytes == 0 ? 1 : bytes);
}

void* NewBlockOrThrow(std::size_t bytes, std::size_t alignment) {
  void* block = NewBlock(bytes, alignment);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

constexpr std::size_t kUsual = alignof(std::max_align_t);

}  // namespace

void* operator new(std::size_t bytes) {
  return NewBlockOrThrow(bytes, kUsual);
}
void* operator new[](std::size_t bytes) {
  return NewBlockOrThrow(bytes, kUsual);
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  return NewBlock(bytes, kUsual);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
  return NewBlock(bytes, kUsual);
}
void* operator new(std::size_t bytes, std::align_val_t alignment) {
  return NewBlockOrThrow(bytes, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t bytes, std::align_val_t alignment) {
  return NewBlockOrThrow(bytes, static_cast<std::size_t>(alignment));
}

void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete[](void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
  std::free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
  std::free(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::align_val_t) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept {
  std::free(block);
}
