// An input read as choices, byte by byte; the choices behind its end are all the first ones.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

namespace tavrel::fuzz {

class Choices {
 public:
  explicit Choices(std::string_view input) noexcept : rest_(input) {}

  [[nodiscard]] bool IsEmpty() const noexcept { return rest_.empty(); }

  // A number from 0 to `count` - 1; `count` is at most 256.
  std::size_t Below(std::size_t count) noexcept { return Byte() % count; }

  // Mostly from -1 to `count`, now and then any number.
  std::int32_t Position(std::int32_t count) noexcept {
    const unsigned byte = Byte();
    if (byte == 255) return std::numeric_limits<std::int32_t>::max();
    if (byte == 254) return std::numeric_limits<std::int32_t>::min();
    if (byte == 253) return Number();
    return static_cast<std::int32_t>(byte % (static_cast<unsigned>(count) + 2)) - 1;
  }

  std::int32_t Number() noexcept {
    std::uint32_t number = 0;
    for (int i = 0; i < 4; ++i) number = number << 8 | Byte();
    return static_cast<std::int32_t>(number);
  }

  // Up to the next zero byte.
  std::string Text() {
    const std::string text(rest_.substr(0, rest_.find('\0')));
    rest_.remove_prefix(text.size());
    (void)Byte();
    return text;
  }

 private:
  unsigned Byte() noexcept {
    if (rest_.empty()) return 0;
    const auto byte = static_cast<unsigned char>(rest_.front());
    rest_.remove_prefix(1);
    return byte;
  }

  std::string_view rest_;
};

}  // namespace tavrel::fuzz
