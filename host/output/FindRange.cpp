#include "host/output/FindRange.h"

#include <string.h>
#include <utf8proc.h>

#include <cstdint>
#include <string>
#include <vector>

#include "host/output/Text.h"
#include "text/Ascii.h"
#include "text/TextFolding.h"

namespace tavrel::host {
namespace {

// The length of the character at the start of a valid, non-empty text.
std::size_t LengthAt(std::string_view text) {
  if (static_cast<unsigned char>(text[0]) < 0x80) return 1;
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
  constexpr std::size_t kMostParts = 32;  // a character has at most 18
  constexpr auto kFoldingOptions = static_cast<utf8proc_option_t>(
      UTF8PROC_STABLE | UTF8PROC_DECOMPOSE | UTF8PROC_CASEFOLD | UTF8PROC_STRIPMARK);
  if (static_cast<unsigned char>(character[0]) < 0x80) {
    target += text::ToLowerCase(character[0]);
    return;
  }
  utf8proc_int32_t code = 0;
  const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(character.data());
  if (utf8proc_iterate(bytes, static_cast<utf8proc_ssize_t>(character.size()), &code) <= 0) return;
  utf8proc_int32_t parts[kMostParts];
  int boundary = 0;
  const utf8proc_ssize_t count =
      utf8proc_decompose_char(code, parts, kMostParts, kFoldingOptions, &boundary);
  for (utf8proc_ssize_t i = 0; i < count && count <= utf8proc_ssize_t{kMostParts}; ++i) {
    utf8proc_uint8_t encoded[4];
    const utf8proc_ssize_t size = utf8proc_encode_char(parts[i], encoded);
    target.append(reinterpret_cast<char*>(encoded), static_cast<std::size_t>(size));
  }
}

// Maps `text` character by character. Result: the mapped text; ends: where each character's part of
// it ends.
template <typename Append>
std::string MapCharacters(std::string_view text, std::vector<std::size_t>& ends, Append&& append) {
  std::string mapped;
  while (!text.empty()) {
    const std::size_t length = LengthAt(text);
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
    at += LengthAt(text.substr(at));
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

void AppendAccentless(std::string& target, std::string_view text) {
  while (!text.empty()) {
    const Character first = FirstCharacter(text);
    if (first.code >= 0) AppendWithoutAccents(target, text.substr(0, first.length));
    text.remove_prefix(first.length);
  }
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
