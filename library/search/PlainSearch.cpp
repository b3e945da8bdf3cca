#include "library/search/PlainSearch.h"

#include <cstring>

#include "library/file/PropertyList.h"
#include "library/file/TextDecoding.h"
#include "library/playlists/PlaylistTable.h"
#include "library/tracks/TrackTable.h"
#include "system/Memory.h"
#include "text/TextSearch.h"

namespace {

// Terms are alternatives: the first that is found makes the match, the others are not looked at.
bool IsMatch(const TBXMLElement* trackDict, const SongInfo& terms) noexcept {
  return FilterPropMatch(trackDict, "Name", terms.name) != 0 ||
         FilterPropMatch(trackDict, "Artist", terms.artist) != 0 ||
         FilterPropMatch(trackDict, "Album", terms.album) != 0;
}

}  // namespace

std::int32_t FilterPropMatch(const TBXMLElement* trackDict, const char* key,
                             const char* term) noexcept {
  if (key == nullptr || term == nullptr) return 0;
  const TBXMLElement* value = tavrel::FindValue(trackDict, key);
  if (value == nullptr || value->text == nullptr) return 0;

  const std::size_t size = std::strlen(value->text) + 1;
  auto* decoded = static_cast<char*>(tavrel::system::AllocateZeroed(size));
  if (decoded == nullptr) return 0;
  RestoreXMLEscChar(decoded, value->text, static_cast<std::int32_t>(size));
  const bool isIn = tavrel::text::SearchTerm(term).IsIn(decoded);
  tavrel::system::Release(decoded);
  return isIn ? 1 : 0;
}

std::int32_t tavrel::SearchPlainly(const TBXMLElement* trackDictionary, const SongInfo& terms,
                                   SearchSongCallback callback, void* context) noexcept {
  std::int32_t count = 0;
  const TBXMLElement* key = trackDictionary->firstChild;
  while (key != nullptr && key->nextSibling != nullptr) {
    const TBXMLElement* dict = key->nextSibling;
    PlaylistRecord* playlist = nullptr;
    std::int32_t position = 0;
    if (IsMatch(dict, terms)) {
      playlist = GetPlaylistByTrackId(TrackIdOf(dict), &position);
      ++count;
    }
    if (callback(playlist, position, context) == 0) break;
    key = dict->nextSibling;
  }
  return count;
}
