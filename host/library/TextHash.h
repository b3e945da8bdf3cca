// Hash tables by texts that anybody may have written.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace tavrel::host {

using HashSeed = std::array<std::uint64_t, 2>;

// SipHash-2-4: without the seed nobody can make up texts that have the same hash.
[[nodiscard]] std::uint64_t SeededHash(std::string_view text, const HashSeed& seed) noexcept;

// Hashes texts of any type, so that a look-up copies nothing. Each table has a seed of its own, out of the
// system's randomness.
class TextHash {
 public:
  using is_transparent = void;

  TextHash() noexcept;
  // Not declared noexcept, though nothing is thrown: tables of GNU's library keep the hash of each text then,
  // and do not count it anew for each neighbour that they pass, and whenever they grow.
  std::size_t operator()(std::string_view text) const {
    return static_cast<std::size_t>(SeededHash(text, seed_));
  }

 private:
  HashSeed seed_;
};

template <typename Value>
using TextMap = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;
using TextSet = std::unordered_set<std::string, TextHash, std::equal_to<>>;

}  // namespace tavrel::host
