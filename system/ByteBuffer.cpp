#include "system/ByteBuffer.h"

#include <atomic>
#include <cstring>
#include <new>

namespace tavrel::system {

struct ByteBuffer::Shared {
  std::atomic<std::size_t> handles;
  ZeroedBlock block;
  std::size_t length;
};

ByteBuffer::ByteBuffer(const ByteBuffer& other) noexcept : shared_(other.shared_) {
  if (shared_ != nullptr) shared_->handles.fetch_add(1, std::memory_order_relaxed);
}

ByteBuffer::~ByteBuffer() {
  if (shared_ == nullptr || shared_->handles.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
  ReleaseBlock(shared_->block);
  Release(shared_);
}

ByteBuffer ByteBuffer::Copy(std::string_view bytes) noexcept {
  // One byte more than asked for: a buffer of no bytes is still a buffer.
  const ZeroedBlock block = AllocateBlock(bytes.size() + 1);
  if (block.address != nullptr && !bytes.empty()) {
    std::memcpy(block.address, bytes.data(), bytes.size());
  }
  return Adopt(block, bytes.size());
}

ByteBuffer ByteBuffer::Adopt(ZeroedBlock block, std::size_t length) noexcept {
  ByteBuffer result;
  if (block.address == nullptr) return result;
  void* place = Allocate(sizeof(Shared));
  if (place == nullptr) {
    ReleaseBlock(block);
    return result;
  }
  result.shared_ = new (place) Shared{1, block, length};
  return result;
}

const char* ByteBuffer::data() const noexcept {
  return shared_ == nullptr ? nullptr : shared_->block.address;
}

std::size_t ByteBuffer::size() const noexcept {
  return shared_ == nullptr ? 0 : shared_->length;
}

}  // namespace tavrel::system
