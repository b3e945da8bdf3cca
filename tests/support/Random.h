// Random choices that are the same on every machine and in every run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::test {

class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  // A number from 0 to `count` - 1.
  [[nodiscard]] std::size_t Below(std::size_t count) {
    return static_cast<std::size_t>(Next() % count);
  }

  // `count` pieces of `alphabet`, one behind the other.
  [[nodiscard]] std::string Text(const std::vector<std::string_view>& alphabet, std::size_t count) {
    std::string text;
    while (count-- > 0) text += alphabet[Below(alphabet.size())];
    return text;
  }

  [[nodiscard]] std::string Bytes(std::size_t count) {
    std::string bytes(count, '\0');
    for (char& byte : bytes) byte = static_cast<char>(Next());
    return bytes;
  }

 private:
  // SplitMix64: a few steps, also where nothing is optimised.
  std::uint64_t Next() {
    std::uint64_t number = state_ += 0x9E3779B97F4A7C15;
    number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9;
    number = (number ^ (number >> 27)) * 0x94D049BB133111EB;
    return number ^ (number >> 31);
  }

  std::uint64_t state_;
};

}  // namespace tavrel::test
