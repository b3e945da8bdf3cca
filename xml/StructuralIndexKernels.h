// What the functions that make the index have in common, and these functions.
//
// All but the plain one make a mask of 64 bytes, one bit for each: '<' is 0x3C and '>' is 0x3E, so
// that one OR and one comparison find both. The numbers of the bits that are set are the positions.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tavrel::xml {

std::size_t IndexSse2(const char* text, std::size_t length, std::uint32_t base,
                      std::uint32_t* positions) noexcept;
std::size_t IndexAvx2(const char* text, std::size_t length, std::uint32_t base,
                      std::uint32_t* positions) noexcept;
std::size_t IndexAvx512(const char* text, std::size_t length, std::uint32_t base,
                        std::uint32_t* positions) noexcept;
std::size_t IndexNeon(const char* text, std::size_t length, std::uint32_t base,
                      std::uint32_t* positions) noexcept;

inline constexpr std::size_t kStride = 64;

// For each byte of a mask, the numbers of the bits that are set, and how many they are. Every byte
// writes eight positions, most of them in vain: that is cheaper than to branch on their number,
// which nobody can predict.
struct BitTable {
  alignas(8) std::array<std::array<std::uint8_t, 8>, 256> numbers;
  std::array<std::uint8_t, 256> count;
};

inline constexpr BitTable kBits = [] {
  BitTable table{};
  for (std::size_t byte = 0; byte < 256; ++byte) {
    for (std::uint8_t bit = 0; bit < 8; ++bit) {
      if ((byte >> bit & 1) != 0) table.numbers[byte][table.count[byte]++] = bit;
    }
  }
  return table;
}();

// Walks a text in strides of 64 bytes. The last, shorter one is a zero-filled copy: nothing is read
// behind the text.
class Strides {
 public:
  [[gnu::always_inline]] Strides(const char* text, std::size_t length) noexcept
      : at_(text), left_(length) {
    CopyRest();
  }
  [[nodiscard, gnu::always_inline]] bool More() const noexcept { return left_ > 0; }
  [[nodiscard, gnu::always_inline]] const char* At() const noexcept { return at_; }
  [[gnu::always_inline]] void Advance() noexcept {
    at_ += kStride;
    left_ -= std::min(left_, kStride);
    CopyRest();
  }

 private:
  [[gnu::always_inline]] void CopyRest() noexcept {
    if (left_ == 0 || left_ >= kStride) return;
    std::memset(rest_, 0, kStride);
    std::memcpy(rest_, at_, left_);
    at_ = rest_;
  }

  const char* at_;
  std::size_t left_;
  char rest_[kStride];
};

}  // namespace tavrel::xml
