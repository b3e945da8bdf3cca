#include "library/search/PlainSearch.h"

#include <algorithm>
#include <cstring>

#include "library/file/PropertyList.h"
#include "library/file/XmlText.h"
#include "library/playlists/PlaylistQueries.h"
#include "library/tracks/TrackFields.h"
#include "library/tracks/TrackTable.h"
#include "system/Memory.h"
#include "text/TextSearch.h"

namespace tavrel {
namespace {

// Terms are alternatives: the first that is found makes the match, the others are not looked at.
bool IsMatch(const TBXMLElement* trackDict, const SongInfo& terms) noexcept {
  return std::any_of(kSearchedFields.begin(), kSearchedFields.end(), [&](std::size_t field) {
    const TrackField& searched = kTrackFields[field];
    return PropertyMatches(trackDict, searched.key, terms.*searched.text);
  });
}

}  // namespace

bool PropertyMatches(const TBXMLElement* trackDict, const char* key, const char* term) noexcept {
  if (key == nullptr || term == nullptr) return false;
  const TBXMLElement* value = FindValue(trackDict, key);
  if (value == nullptr || value->text == nullptr) return false;

  const std::size_t size = std::strlen(value->text) + 1;
  auto* decoded = static_cast<char*>(system::AllocateZeroed(size));
  if (decoded == nullptr) return false;
  DecodeXmlText(decoded, value->text, static_cast<std::int32_t>(size));
  const bool isIn = text::SearchTerm(term).IsIn(decoded);
  system::Release(decoded);
  return isIn;
}

std::int32_t SearchPlainly(GlobalState* const& current, const TBXMLElement* trackDictionary,
                           const SongInfo& terms, SearchSongCallback callback,
                           void* context) noexcept {
  std::int32_t count = 0;
  for (const auto [key, dict] : Pairs(trackDictionary)) {
    PlaylistRecord* playlist = nullptr;
    std::int32_t index = 0;
    if (IsMatch(dict, terms)) {
      playlist = PlaylistOfTrack(current, TrackIdOf(dict), &index);
      ++count;
    }
    if (callback(playlist, index, context) == 0) break;
  }
  return count;
}

std::int32_t FindPlainly(const TBXMLElement* trackDictionary, std::int32_t mostTracks,
                         const SongInfo& terms, FindSongsCallback callback,
                         void* context) noexcept {
  std::int32_t count = 0;
  std::int32_t track = 0;
  for (const auto [key, dict] : Pairs(trackDictionary)) {
    if (track == mostTracks) break;
    if (IsMatch(dict, terms)) {
      ++count;
      if (callback(track, context) == 0) break;
    }
    ++track;
  }
  return count;
}

}  // namespace tavrel
