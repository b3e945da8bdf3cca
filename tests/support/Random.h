// Random choices that are the same on every machine and in every run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::test {

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}

  // A number from 0 to `count` - 1.
  [[nodiscard]] std::size_t Below(std::size_t count) {
    return static_cast<std::size_t>(engine_() % count);
  }

  // `count` pieces of `alphabet`, one behind the other.
  [[nodiscard]] std::string Text(const std::vector<std::string_view>& alphabet, std::size_t count) {
    std::string text;
    while (count-- > 0) text += alphabet[Below(alphabet.size())];
    return text;
  }

  [[nodiscard]] std::string Bytes(std::size_t count) {
    std::string bytes(count, '\0');
    for (char& byte : bytes) byte = static_cast<char>(engine_());
    return bytes;
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace tavrel::test
