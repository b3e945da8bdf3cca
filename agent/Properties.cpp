// The additions that reach every property, and find songs without a call for each that does not match. They
// answer 0 while no library is loaded, also after an unload.
#include "agent/Lifecycle.h"
#include "library/file/PropertyList.h"
#include "library/file/PropertyText.h"
#include "library/playlists/PlaylistQueries.h"
#include "library/playlists/PlaylistTable.h"
#include "library/search/SongFinding.h"
#include "library/tracks/TrackTable.h"
#include "tavrel/tavrel.h"

using tavrel::CopyProperty;
using tavrel::CurrentLibrary;
using tavrel::LibraryState;
using tavrel::VisitProperties;

namespace {

// The dictionaries behind a song, a playlist and the library; none where there is none.

const TBXMLElement* PropertiesOfSong(const PlaylistRecord* playlist, std::int32_t index) noexcept {
  const LibraryState* state = CurrentLibrary();
  return state == nullptr ? nullptr : tavrel::PropertiesOf(*state, tavrel::SongAt(playlist, index));
}

const TBXMLElement* PropertiesOfPlaylist(const PlaylistRecord* playlist) noexcept {
  const LibraryState* state = CurrentLibrary();
  return state == nullptr ? nullptr : tavrel::PropertiesOf(*state, playlist);
}

const TBXMLElement* PropertiesOfLibrary() noexcept {
  const LibraryState* state = CurrentLibrary();
  return state == nullptr ? nullptr : tavrel::TopLevelDictionary(state->document);
}

}  // namespace

extern "C" {

std::int32_t GetSongProperty(const PlaylistRecord* playlist, std::int32_t index, const char* key,
                             char* buffer, std::int32_t bufferSize) noexcept {
  return CopyProperty(PropertiesOfSong(playlist, index), key, buffer, bufferSize);
}

std::int32_t GetPlaylistProperty(const PlaylistRecord* playlist, const char* key, char* buffer,
                                 std::int32_t bufferSize) noexcept {
  return CopyProperty(PropertiesOfPlaylist(playlist), key, buffer, bufferSize);
}

std::int32_t GetLibraryProperty(const char* key, char* buffer, std::int32_t bufferSize) noexcept {
  return CopyProperty(PropertiesOfLibrary(), key, buffer, bufferSize);
}

std::int32_t VisitSongProperties(const PlaylistRecord* playlist, std::int32_t index,
                                 PropertyVisitor visitor, void* context) noexcept {
  return VisitProperties(PropertiesOfSong(playlist, index), visitor, context);
}

std::int32_t VisitPlaylistProperties(const PlaylistRecord* playlist, PropertyVisitor visitor,
                                     void* context) noexcept {
  return VisitProperties(PropertiesOfPlaylist(playlist), visitor, context);
}

std::int32_t VisitLibraryProperties(PropertyVisitor visitor, void* context) noexcept {
  return VisitProperties(PropertiesOfLibrary(), visitor, context);
}

std::int32_t FindSongs(const SongInfo* terms, FindSongsCallback callback, void* context) noexcept {
  LibraryState* state = CurrentLibrary();
  if (state == nullptr || terms == nullptr || callback == nullptr) return 0;
  return tavrel::FindMatches(*state, *terms, callback, context);
}

}  // extern "C"
