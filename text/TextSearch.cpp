#include "text/TextSearch.h"

#include <limits>
#include <optional>

#include "system/Memory.h"

namespace tavrel::text {
namespace {

// Texts up to this length are folded and searched in blocks whose sizes there are numbers for. Only where
// addresses have 32 bits can there be longer ones: there is no memory for them anyway.
constexpr std::size_t kMostFoldable = std::numeric_limits<std::size_t>::max() / 32;

}  // namespace

// A term longer than 4 GiB is longer than any text: it is never found.
SearchTerm::SearchTerm(std::string_view text, system::InstructionSet set) noexcept {
  constexpr std::size_t kLongest = std::numeric_limits<std::uint32_t>::max() / kFoldingGrowth;
  isPrepared_ = text.empty() || text.size() > kLongest;
  if (isPrepared_ || text.size() > kMostFoldable) return;
  const std::size_t room = kFoldingGrowth * text.size();
  constexpr std::size_t kBorder = sizeof(std::uint32_t);
  block_ = static_cast<char*>(
      system::Allocate((room + kBorder - 1) / kBorder * kBorder + room * kBorder));
  if (block_ == nullptr) return;
  const std::optional<std::size_t> size = FoldText(text, {block_, nullptr}, 0);
  isPrepared_ = size.has_value();
  if (size.value_or(0) == 0) return;
  pattern_ = MakePattern({block_, *size}, set);
  borders_ = reinterpret_cast<std::uint32_t*>(block_ + (room + kBorder - 1) / kBorder * kBorder);
  PrepareBorders();
}

SearchTerm::~SearchTerm() {
  system::Release(block_);
}

std::size_t SearchTerm::FindIn(const FoldedTexts& texts, std::size_t from,
                               std::size_t end) const noexcept {
  if (pattern_.bytes.empty()) return kNotFound;
  const char* last = texts.bytes + end;
  SearchEffort effort{texts.bytes + from};
  for (const char* at = effort.from;;) {
    const FoundBytes found = FindPattern(pattern_, at, last, effort);
    const auto place = static_cast<std::size_t>(found.at - texts.bytes);
    if (!found.isMatch)
      return found.at == last ? kNotFound : FindByKnuthMorrisPratt(texts, place, end);
    if (IsMatch(texts, place)) return place;
    at = found.at + 1;
  }
}

bool SearchTerm::IsIn(std::string_view text) const noexcept {
  if (text.size() > kMostFoldable) return false;
  const std::size_t room = kFoldingGrowth * text.size() + 1;
  const std::size_t words = room / 64 + 1;
  auto* joined =
      static_cast<std::uint64_t*>(system::AllocateZeroed(words * sizeof(std::uint64_t) + room));
  if (joined == nullptr) return false;
  char* folded = reinterpret_cast<char*>(joined + words);
  const std::size_t size = FoldText(text, {folded, joined}, 0).value_or(0);
  const bool isIn = FindIn({folded, joined}, 0, size) != kNotFound;
  system::Release(joined);
  return isIn;
}

// Whether the bytes at `at`, which are those of the term, begin and end between characters.
bool SearchTerm::IsMatch(const FoldedTexts& texts, std::size_t at) const noexcept {
  return !texts.IsJoined(at) && !texts.IsJoined(at + pattern_.bytes.size());
}

// The way out where a search costs too much: no byte of the texts is looked at twice.
std::size_t SearchTerm::FindByKnuthMorrisPratt(const FoldedTexts& texts, std::size_t from,
                                               std::size_t end) const noexcept {
  const std::string_view term = pattern_.bytes;
  std::size_t matched = 0;
  for (std::size_t at = from; at < end; ++at) {
    while (matched > 0 && texts.bytes[at] != term[matched]) matched = borders_[matched - 1];
    if (texts.bytes[at] == term[matched]) ++matched;
    if (matched < term.size()) continue;
    if (IsMatch(texts, at + 1 - matched)) return at + 1 - matched;
    matched = borders_[matched - 1];
  }
  return kNotFound;
}

// For each prefix of the term, the length of its longest border: a part, shorter than the prefix,
// that it both begins and ends with.
void SearchTerm::PrepareBorders() noexcept {
  const std::string_view term = pattern_.bytes;
  std::uint32_t border = 0;
  borders_[0] = 0;
  for (std::size_t i = 1; i < term.size(); ++i) {
    while (border > 0 && term[i] != term[border]) border = borders_[border - 1];
    if (term[i] == term[border]) ++border;
    borders_[i] = border;
  }
}

}  // namespace tavrel::text
