// One song's properties, for the host.
#include <cstring>

#include "agent/Implementations.h"
#include "library/playlists/PlaylistTable.h"
#include "library/tracks/TrackProperties.h"

namespace {

// Sizes are outputs only: what the host put there is overwritten and never compared. Deliberate:
// the host learns the sizes from a first call and makes its buffers large enough.
void CopyText(const char* text, std::int32_t size, char* buffer,
              std::int32_t& bufferSize) noexcept {
  bufferSize = size;
  if (buffer != nullptr && text != nullptr) std::memcpy(buffer, text, std::strlen(text) + 1);
}

}  // namespace

std::int32_t GetSongInfoImp(PlaylistRecord* playlist, std::int32_t index, SongInfo* info) noexcept {
  if (playlist == nullptr || info == nullptr) return 0;
  if (index < 0 || index >= playlist->count) return 0;
  TrackRecord& track = *playlist->tracks[index];
  if (track.pendingDict != nullptr) tavrel::LoadTrackProperties(track);

  const SongInfo& song = track.info;
  CopyText(song.name, song.nameSize, info->name, info->nameSize);
  CopyText(song.location, song.locationSize, info->location, info->locationSize);
  CopyText(song.artist, song.artistSize, info->artist, info->artistSize);
  CopyText(song.album, song.albumSize, info->album, info->albumSize);
  CopyText(song.genre, song.genreSize, info->genre, info->genreSize);
  info->totalTime = song.totalTime;
  info->playCount = song.playCount;
  info->trackNumber = song.trackNumber;
  info->movie = song.movie;
  return static_cast<std::int32_t>(sizeof(SongInfo)) + song.nameSize + song.locationSize +
         song.artistSize + song.albumSize + song.genreSize;
}
