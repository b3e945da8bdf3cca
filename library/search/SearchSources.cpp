#include "library/search/SearchSources.h"

#include <algorithm>
#include <cstring>

#include "library/file/PropertyList.h"
#include "library/tracks/TrackLookahead.h"
#include "library/tracks/TrackTable.h"
#include "xml/TBXML.h"

namespace tavrel {
namespace {

constexpr std::size_t kColumns = kSearchedFields.size();

// For each field of a track its column, kColumns for one that is not searched.
constexpr std::array<std::uint8_t, kNoField + 1> kColumnOfField = [] {
  std::array<std::uint8_t, kNoField + 1> columns{};
  for (std::uint8_t& column : columns) column = kColumns;
  for (std::uint8_t i = 0; i < kColumns; ++i) columns[kSearchedFields[i]] = i;
  return columns;
}();

// Of each track the first pairs, with the names of keys and the texts of values, are read.
using SourceLookahead = TrackLookahead<16, 6, 12, 6>;

bool IsSameText(const char* a, const char* b) noexcept {
  return a == b || (a != nullptr && b != nullptr && std::strcmp(a, b) == 0);
}

}  // namespace

bool SearchSources::Read(const TBXML& document, std::uint32_t mostTracks) noexcept {
  constexpr std::size_t kBytesPerTrack = kColumns * sizeof(TextSource) + sizeof(std::int32_t);
  block_ = system::AllocateBlock((std::size_t{mostTracks} + 1) * kBytesPerTrack);
  if (block_.address == nullptr) return false;
  auto* place = reinterpret_cast<TextSource*>(block_.address);
  for (TextSource*& sources : sources_) {
    sources = place;
    place += mostTracks;
  }
  auto* trackIds = reinterpret_cast<std::int32_t*>(place);

  SourceLookahead lookahead(document.listedElements());
  for (const auto [key, dict] : Pairs(TrackDictionary(&document))) {
    lookahead.Advance();
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
  for (const auto [key, value] : Pairs(dict)) {
    const std::size_t column = kColumnOfField[FieldOfKey(key->text)];
    if (column == kColumns || values[column] != nullptr) continue;
    values[column] = value;
    if (--missing == 0) break;
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
