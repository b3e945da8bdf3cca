#include "host/page/Columns.h"

#include <algorithm>
#include <array>
#include <bit>

#include "host/output/Text.h"

namespace tavrel::host {
namespace {

constexpr std::uint64_t kGroup = 0x80;

// Without a branch, which no processor would foresee.
std::uint64_t Zigzag(std::int64_t number) noexcept {
  const auto bits = static_cast<std::uint64_t>(number);
  return (bits << 1) ^ (0 - (bits >> 63));
}

// Result: the end of what was written; one byte behind it may be written, too.
char* Write(char* bytes, std::uint64_t number) noexcept {
  // Nearly all take one byte or two, and no processor would foresee which.
  if (number < kGroup * kGroup) {
    const std::uint64_t isLonger = number >= kGroup ? 1 : 0;
    bytes[0] = static_cast<char>(number | isLonger * kGroup);
    bytes[1] = static_cast<char>(number / kGroup);
    return bytes + 1 + isLonger;
  }
  for (; number >= kGroup; number >>= 7) *bytes++ = static_cast<char>(number % kGroup + kGroup);
  *bytes++ = static_cast<char>(number);
  return bytes;
}

// By how many bits it has.
constexpr std::array<std::uint8_t, 65> kLengths = [] {
  std::array<std::uint8_t, 65> lengths{};
  for (std::size_t bits = 0; bits < lengths.size(); ++bits) {
    lengths[bits] = static_cast<std::uint8_t>(bits == 0 ? 1 : (bits + 6) / 7);
  }
  return lengths;
}();

std::size_t LengthOf(std::uint64_t number) noexcept {
  return kLengths[static_cast<std::size_t>(std::bit_width(number))];
}

// Without overflow: what goes round comes round.
std::int64_t Difference(std::int64_t number, std::int64_t before) noexcept {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(number) -
                                   static_cast<std::uint64_t>(before));
}

}  // namespace

void TextColumn::Set(std::size_t song, std::string_view text) {
  if (text != last_) {
    lastNumber_ = NumberOf(text, known_.HashOf(text));
    last_ = text;
  }
  numbers_[song] = lastNumber_;
}

void TextColumn::Add(const std::vector<SongText>& songs) {
  runs_.clear();
  for (std::size_t i = 0; i < songs.size(); ++i) {
    if (i > 0 && songs[i].text == songs[i - 1].text) continue;
    runs_.push_back({i, known_.HashOf(songs[i].text)});
    known_.Expect(runs_.back().hash);
  }
  for (std::size_t run = 0; run < runs_.size(); ++run) {
    const std::size_t first = runs_[run].first;
    const std::size_t end = run + 1 < runs_.size() ? runs_[run + 1].first : songs.size();
    const std::int64_t number = NumberOf(songs[first].text, runs_[run].hash);
    for (std::size_t i = first; i < end; ++i) numbers_[songs[i].song] = number;
  }
}

std::int64_t TextColumn::NumberOf(std::string_view text, std::uint64_t hash) {
  const auto [written, isNewlyWritten] = known_.Of(text, hash);
  if (!isNewlyWritten) return shown_[written];
  shown_.push_back(0);
  const std::string shown = Compose(text);
  if (shown.find_first_not_of(' ') == std::string::npos) return 0;
  const auto [composed, isNewlyComposed] =
      shown == text ? TextNumbers::Found{written, true} : known_.Of(shown);
  if (isNewlyComposed) {
    shown_.resize(known_.Size());
    shown_[composed] = static_cast<std::int64_t>(texts_.size());
    texts_.push_back(composed);
  }
  return shown_[written] = shown_[composed];
}

PackedNumbers Pack(std::span<const std::int64_t> numbers) {
  std::size_t plain = 0;
  std::size_t different = 0;
  std::int64_t before = 0;
  for (const std::int64_t number : numbers) {
    plain += LengthOf(Zigzag(number));
    different += LengthOf(Zigzag(Difference(number, before)));
    before = number;
  }
  PackedNumbers packed;
  packed.areDifferences = different < plain;
  packed.bytes.resize(std::min(plain, different) + 1);
  char* next = packed.bytes.data();
  before = 0;
  for (const std::int64_t number : numbers) {
    next = Write(next, Zigzag(packed.areDifferences ? Difference(number, before) : number));
    before = number;
  }
  packed.bytes.pop_back();
  return packed;
}

}  // namespace tavrel::host
