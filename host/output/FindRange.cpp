#include "host/output/FindRange.h"

#include <string.h>
#include <utf8proc.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "text/TextFolding.h"

namespace tavrel::host {
namespace {

// The length of the character at the start of a valid, non-empty text.
std::size_t CharacterLength(std::string_view text) {
  utf8proc_int32_t code = 0;
  const utf8proc_ssize_t length =
      utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                       static_cast<utf8proc_ssize_t>(text.size()), &code);
  return length > 0 ? static_cast<std::size_t>(length) : text.size();
}

// Folds `text` behind what `target` holds, if it is valid.
void AppendFolded(std::string& target, std::string_view text) {
  const std::size_t before = target.size();
  target.resize(before + text::kFoldingGrowth * text.size());
  target.resize(before + text::FoldText(text, {target.data(), nullptr}, before).value_or(0));
}

void AppendWithoutAccents(std::string& target, std::string_view character) {
  utf8proc_uint8_t* mapped = nullptr;
  const auto options = static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_DECOMPOSE |
                                                      UTF8PROC_CASEFOLD | UTF8PROC_STRIPMARK);
  const utf8proc_ssize_t size =
      utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(character.data()),
                   static_cast<utf8proc_ssize_t>(character.size()), &mapped, options);
  if (size > 0) target.append(reinterpret_cast<char*>(mapped), static_cast<std::size_t>(size));
  std::free(mapped);
}

// Maps `text` character by character. Result: the mapped text; ends: where each character's part of
// it ends.
template <typename Append>
std::string MapCharacters(std::string_view text, std::vector<std::size_t>& ends, Append&& append) {
  std::string mapped;
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    append(mapped, text.substr(0, length));
    ends.push_back(mapped.size());
    text.remove_prefix(length);
  }
  return mapped;
}

// The characters of `text` of whose parts any stands between the offsets `from` and `to` of the
// mapped text, with those behind them that have no part in it.
TextRange OriginalRange(std::string_view text, const std::vector<std::size_t>& ends,
                        std::size_t from, std::size_t to) {
  TextRange range{0, 0};
  std::size_t at = 0;
  std::size_t start = 0;
  for (const std::size_t end : ends) {
    at += CharacterLength(text.substr(at));
    if (end <= from) range.from = at;
    if (start < to || end == to) range.to = at;
    start = end;
  }
  return range;
}

}  // namespace

// Where marks change places while a text is folded, they do so between the ends of a match.
std::optional<TextRange> FindRange(std::string_view text, const text::SearchTerm& term) {
  std::string folded(text::kFoldingGrowth * text.size() + 1, '\0');
  std::vector<std::uint64_t> joined(folded.size() / 64 + 1);
  const text::FoldingTarget target{folded.data(), joined.data()};
  const std::size_t size = text::FoldText(text, target, 0).value_or(0);
  const std::size_t place = term.FindIn({folded.data(), joined.data()}, 0, size);
  if (place == text::kNotFound) return std::nullopt;
  std::vector<std::size_t> ends;
  (void)MapCharacters(text, ends, AppendFolded);
  return OriginalRange(text, ends, place, place + term.foldedSize());
}

AccentlessTerm::AccentlessTerm(std::string_view part) {
  std::vector<std::size_t> ends;
  wanted_ = MapCharacters(part, ends, AppendWithoutAccents);
}

std::optional<TextRange> AccentlessTerm::FindIn(std::string_view text) const {
  if (wanted_.empty()) return std::nullopt;
  std::vector<std::size_t> ends;
  const std::string mapped = MapCharacters(text, ends, AppendWithoutAccents);
  // Linear, which the search of std::string is not.
  const void* found = ::memmem(mapped.data(), mapped.size(), wanted_.data(), wanted_.size());
  if (found == nullptr) return std::nullopt;
  const auto place = static_cast<std::size_t>(static_cast<const char*>(found) - mapped.data());
  return OriginalRange(text, ends, place, place + wanted_.size());
}

}  // namespace tavrel::host
