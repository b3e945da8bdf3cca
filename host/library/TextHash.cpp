#include "host/library/TextHash.h"

#include <unistd.h>

#include <bit>

namespace tavrel::host {
namespace {

constexpr std::size_t kWord = sizeof(std::uint64_t);

// The state and the rounds as Aumasson and Bernstein describe them.
class SipState {
 public:
  explicit SipState(const HashSeed& seed) noexcept
      : v_{seed[0] ^ 0x736f6d6570736575u, seed[1] ^ 0x646f72616e646f6du,
           seed[0] ^ 0x6c7967656e657261u, seed[1] ^ 0x7465646279746573u} {}

  void Add(std::uint64_t word) noexcept {
    v_[3] ^= word;
    Round();
    Round();
    v_[0] ^= word;
  }

  [[nodiscard]] std::uint64_t Finish() noexcept {
    v_[2] ^= 0xFF;
    for (int round = 0; round < 4; ++round) Round();
    return v_[0] ^ v_[1] ^ v_[2] ^ v_[3];
  }

 private:
  void Round() noexcept {
    v_[0] += v_[1];
    v_[1] = std::rotl(v_[1], 13) ^ v_[0];
    v_[0] = std::rotl(v_[0], 32);
    v_[2] += v_[3];
    v_[3] = std::rotl(v_[3], 16) ^ v_[2];
    v_[0] += v_[3];
    v_[3] = std::rotl(v_[3], 21) ^ v_[0];
    v_[2] += v_[1];
    v_[1] = std::rotl(v_[1], 17) ^ v_[2];
    v_[2] = std::rotl(v_[2], 32);
  }

  std::array<std::uint64_t, 4> v_;
};

// The 8 bytes from there, the first one lowest.
std::uint64_t WordAt(const char* at) noexcept {
  const auto byte = [at](unsigned i) {
    return std::uint64_t{static_cast<unsigned char>(at[i])} << 8 * i;
  };
  return byte(0) | byte(1) | byte(2) | byte(3) | byte(4) | byte(5) | byte(6) | byte(7);
}

// The bytes behind the last whole word, as the lowest ones.
std::uint64_t RestOf(std::string_view text) noexcept {
  const std::size_t rest = text.size() % kWord;
  if (rest == 0) return 0;
  const char* const end = text.data() + text.size();
  if (text.size() > kWord) return WordAt(end - kWord) >> 8 * (kWord - rest);
  std::uint64_t word = 0;
  for (std::size_t i = rest; i > 0; --i) word = word << 8 | static_cast<unsigned char>(text[i - 1]);
  return word;
}

}  // namespace

std::uint64_t SeededHash(std::string_view text, const HashSeed& seed) noexcept {
  SipState state(seed);
  for (std::size_t i = 0; i + kWord <= text.size(); i += kWord) state.Add(WordAt(text.data() + i));
  const std::uint64_t length = text.size();
  state.Add(RestOf(text) | length << 56);
  return state.Finish();
}

TextHash::TextHash() noexcept : seed_() {
  if (::getentropy(seed_.data(), sizeof seed_) == 0) return;
  // A system without randomness still puts this program where others do not know.
  seed_ = {reinterpret_cast<std::uintptr_t>(this), reinterpret_cast<std::uintptr_t>(&SeededHash)};
}

}  // namespace tavrel::host
