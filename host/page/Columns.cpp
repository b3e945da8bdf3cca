#include "host/page/Columns.h"

#include "host/output/Text.h"

namespace tavrel::host {
namespace {

constexpr std::uint64_t kGroup = 0x80;

std::uint64_t Zigzag(std::int64_t number) noexcept {
  const auto bits = static_cast<std::uint64_t>(number);
  return number < 0 ? ~(bits << 1) : bits << 1;
}

void Append(std::string& bytes, std::uint64_t number) {
  for (; number >= kGroup; number >>= 7) bytes += static_cast<char>(number % kGroup + kGroup);
  bytes += static_cast<char>(number);
}

std::size_t LengthOf(std::uint64_t number) noexcept {
  std::size_t length = 1;
  for (; number >= kGroup; number >>= 7) ++length;
  return length;
}

// Without overflow: what goes round comes round.
std::int64_t Difference(std::int64_t number, std::int64_t before) noexcept {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(number) -
                                   static_cast<std::uint64_t>(before));
}

}  // namespace

void TextColumn::Add(std::optional<std::string_view> text) {
  const std::string_view given = text.value_or("");
  if (given != last_) {
    lastNumber_ = NumberOf(given);
    last_ = given;
  }
  numbers_.push_back(lastNumber_);
}

std::int64_t TextColumn::NumberOf(std::string_view text) {
  const auto [written, isNewlyWritten] = known_.Of(text);
  if (!isNewlyWritten) return shown_[written];
  shown_.push_back(0);
  std::string shown = Compose(text);
  if (shown.find_first_not_of(' ') == std::string::npos) return 0;
  const auto [composed, isNewlyComposed] =
      shown == text ? TextNumbers::Found{written, true} : known_.Of(shown);
  if (isNewlyComposed) {
    shown_.resize(known_.Size());
    shown_[composed] = static_cast<std::int64_t>(texts_.size());
    texts_.push_back(std::move(shown));
  }
  return shown_[written] = shown_[composed];
}

PackedNumbers Pack(const std::vector<std::int64_t>& numbers) {
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
  packed.bytes.reserve(packed.areDifferences ? different : plain);
  before = 0;
  for (const std::int64_t number : numbers) {
    Append(packed.bytes, Zigzag(packed.areDifferences ? Difference(number, before) : number));
    before = number;
  }
  return packed;
}

}  // namespace tavrel::host
