#include "library/search/SearchSources.h"

#include <algorithm>
#include <cstring>

#include "library/State.h"
#include "library/file/PropertyList.h"
#include "library/tracks/TrackTable.h"
#include "xml/TBXML.h"

namespace tavrel {
namespace {

constexpr std::size_t kColumns = kSearchKeys.size();

bool Equals(const char* key, const char* wanted) noexcept {
  return key[0] == wanted[0] && std::strcmp(key, wanted) == 0;
}

// The column that a key belongs to, kColumns for none.
std::size_t ColumnOf(const char* key) noexcept {
  if (key == nullptr) return kColumns;
  std::size_t column = 0;
  while (column < kColumns && !Equals(key, kSearchKeys[column])) ++column;
  return column;
}

// What is read of a track lies thousands of bytes behind what was read of the one before it, too far
// for the machine to see it coming. The document's hints tell where; a wrong one costs nothing but
// the look.
class Lookahead {
 public:
  Lookahead() noexcept : dictionaries_(g_pGlobal->document->listedElements()) {}

  void Advance() noexcept {
    if (next_ + kFar < dictionaries_.size()) PrefetchPairs(dictionaries_[next_ + kFar]);
    if (next_ + kNear < dictionaries_.size()) PrefetchTexts(dictionaries_[next_ + kNear]);
    ++next_;
  }

 private:
  static constexpr std::size_t kFar = 16;
  static constexpr std::size_t kNear = 6;

  // The key before the dictionary, the dictionary, and its first pairs, in a row.
  static void PrefetchPairs(const TBXMLElement* dict) noexcept {
    for (int i = -1; i <= 12; ++i) __builtin_prefetch(dict + i);
  }

  // The names of keys and the texts of values, in a row.
  static void PrefetchTexts(const TBXMLElement* dict) noexcept {
    const TBXMLElement* value = FirstValue(dict);
    if (value == nullptr || value->text == nullptr) return;
    for (int i = 0; i < 6; ++i) __builtin_prefetch(value->text + 64 * i);
  }

  std::span<TBXMLElement* const> dictionaries_;
  std::size_t next_ = 0;
};

bool IsSameText(const char* a, const char* b) noexcept {
  return a == b || (a != nullptr && b != nullptr && std::strcmp(a, b) == 0);
}

}  // namespace

bool SearchSources::Read(const TBXMLElement* trackDictionary, std::uint32_t mostTracks) noexcept {
  constexpr std::size_t kBytesPerTrack = kColumns * sizeof(TextSource) + sizeof(std::int32_t);
  block_ = system::AllocateBlock((std::size_t{mostTracks} + 1) * kBytesPerTrack);
  if (block_.address == nullptr) return false;
  auto* place = reinterpret_cast<TextSource*>(block_.address);
  for (TextSource*& sources : sources_) {
    sources = place;
    place += mostTracks;
  }
  auto* trackIds = reinterpret_cast<std::int32_t*>(place);

  Lookahead lookahead;
  const TBXMLElement* key = trackDictionary->firstChild;
  while (key != nullptr && key->nextSibling != nullptr) {
    lookahead.Advance();
    const TBXMLElement* dict = key->nextSibling;
    key = dict->nextSibling;
    const std::size_t track = trackIds_.size();
    if (track == mostTracks) return false;
    ReadTrack(dict);
    trackIds[track] = TrackIdOf(dict);
    trackIds_ = {trackIds, track + 1};
  }
  return true;
}

// The first pair with a key decides, also when its value has no text.
void SearchSources::ReadTrack(const TBXMLElement* dict) noexcept {
  std::array<const TBXMLElement*, kColumns> values = {};
  std::size_t missing = kColumns;
  const TBXMLElement* key = dict->firstChild;
  while (key != nullptr && key->nextSibling != nullptr && missing > 0) {
    const TBXMLElement* value = key->nextSibling;
    const std::size_t column = ColumnOf(key->text);
    if (column < kColumns && values[column] == nullptr) {
      values[column] = value;
      --missing;
    }
    key = value->nextSibling;
  }
  for (std::size_t i = 0; i < kColumns; ++i) {
    AddText(i, values[i] == nullptr ? nullptr : values[i]->text);
  }
}

void SearchSources::AddText(std::size_t column, const char* text) noexcept {
  const std::size_t count = columns_[column].sources.size();
  if (count > 0 && IsSameText(columns_[column].sources.back().text, text)) return;
  TextSource& source = sources_[column][count];
  columns_[column].sources = {sources_[column], count + 1};
  source.text = text;
  source.firstTrack = static_cast<std::uint32_t>(trackIds_.size());
  if (text == nullptr) return;
  const std::size_t length = std::strlen(text);
  source.length = static_cast<std::uint32_t>(length) & 0x7FFFFFFFu;
  textBytes_ += length;
  if (std::memchr(text, '&', length) == nullptr) return;
  source.hasReferences = 1;
  ++columns_[column].withReferences;
  longestWithReferences_ = std::max(longestWithReferences_, length);
}

}  // namespace tavrel
