// A small pseudo-random sequence (SplitMix64). The same seed gives the same sequence on every
// machine and with every compiler, which the distributions of the standard library do not promise.
#pragma once

#include <cstdint>

namespace tavrel::bench {

class Random {
 public:
  explicit constexpr Random(std::uint64_t seed) noexcept : state(seed) {}

  constexpr std::uint64_t Next() noexcept {
    state += 0x9E3779B97F4A7C15U;
    std::uint64_t mixed = state;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
    return mixed ^ (mixed >> 31);
  }

  // From 0 up to `limit` - 1; 0 when `limit` is 0.
  constexpr std::uint32_t Below(std::uint32_t limit) noexcept {
    return static_cast<std::uint32_t>(((Next() >> 32) * limit) >> 32);
  }

  // From `first` up to `last`, both included.
  constexpr std::uint32_t Between(std::uint32_t first, std::uint32_t last) noexcept {
    return first + Below(last - first + 1);
  }

  // As Below, but small numbers come more often than large ones.
  constexpr std::uint32_t LowBelow(std::uint32_t limit) noexcept {
    const std::uint32_t one = Below(limit);
    const std::uint32_t other = Below(limit);
    return one < other ? one : other;
  }

  constexpr bool Chance(std::uint32_t perMille) noexcept { return Below(1000) < perMille; }

 private:
  std::uint64_t state;
};

// A seed for the sequence that belongs to one thing of many: an artist, a playlist.
constexpr std::uint64_t SeedOf(std::uint64_t seed, std::uint64_t family,
                               std::uint64_t member) noexcept {
  return Random(seed ^ (family << 56) ^ (member * 0xD1342543DE82EF95U)).Next();
}

}  // namespace tavrel::bench
