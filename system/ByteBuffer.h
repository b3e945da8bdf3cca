// Byte buffers: shared handles on bytes that never change. "None" is the empty handle; two handles
// are equal when they share the same buffer, whatever it holds.
#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

#include "system/Memory.h"

namespace tavrel::system {

class ByteBuffer {
 public:
  ByteBuffer() noexcept = default;  // none
  ByteBuffer(const ByteBuffer& other) noexcept;
  ByteBuffer(ByteBuffer&& other) noexcept : shared_(std::exchange(other.shared_, nullptr)) {}
  ByteBuffer& operator=(ByteBuffer other) noexcept {
    std::swap(shared_, other.shared_);
    return *this;
  }
  ~ByteBuffer();

  // A buffer with a copy of `bytes`; none when memory is exhausted.
  [[nodiscard]] static ByteBuffer Copy(std::string_view bytes) noexcept;
  // A buffer of the first `length` bytes of `block`, which it takes over in every case; none when
  // `block` is empty or memory is exhausted.
  [[nodiscard]] static ByteBuffer Adopt(ZeroedBlock block, std::size_t length) noexcept;

  [[nodiscard]] explicit operator bool() const noexcept { return shared_ != nullptr; }
  [[nodiscard]] const char* data() const noexcept;  // null for none
  [[nodiscard]] std::size_t size() const noexcept;  // 0 for none
  [[nodiscard]] std::string_view view() const noexcept { return {data(), size()}; }

  [[nodiscard]] friend bool operator==(const ByteBuffer& a, const ByteBuffer& b) noexcept {
    return a.shared_ == b.shared_;
  }

 private:
  struct Shared;
  Shared* shared_ = nullptr;
};

}  // namespace tavrel::system
