// The functions for hosts. Each passes on to its implementation; some look at their pointers first.
#include "agent/Implementations.h"

extern "C" {

std::int32_t AgentInitializer() noexcept {
  return AgentInitializerImp();
}

std::int32_t AgentFinalizer() noexcept {
  return AgentFinalizerImp();
}

std::int32_t GetPlaylistCount(std::int32_t groupIndex) noexcept {
  return GetPlaylistCountImp(groupIndex);
}

PlaylistRecord* OpenPlaylist(std::int32_t groupIndex, std::int32_t index) noexcept {
  return OpenPlaylistImp(groupIndex, index);
}

std::int32_t ClosePlaylist(PlaylistRecord* playlist) noexcept {
  return ClosePlaylistImp(playlist);
}

std::int32_t GetPlaylistName(std::int32_t groupIndex, std::int32_t index, char* buffer,
                             std::int32_t bufferSize) noexcept {
  return GetPlaylistNameImp(groupIndex, index, buffer, bufferSize);
}

std::int32_t GetPlaylistKind(const PlaylistRecord* playlist) noexcept {
  return GetPlaylistKindImp(playlist);
}

std::int32_t GetSongCount(const PlaylistRecord* playlist) noexcept {
  return GetSongCountImp(playlist);
}

std::int32_t GetSongInfo(PlaylistRecord* playlist, std::int32_t index, SongInfo* info) noexcept {
  if (playlist == nullptr || info == nullptr) return 0;
  return GetSongInfoImp(playlist, index, info);
}

std::int32_t SearchSong(const SongInfo* terms, SearchSongCallback callback,
                        void* context) noexcept {
  return SearchSongImp(terms, callback, context);
}

ArtworkHandle* OpenArtwork(PlaylistRecord* playlist, std::int32_t index) noexcept {
  return OpenArtworkImp(playlist, index);
}

std::int32_t GetArtworkCount(const ArtworkHandle* handle) noexcept {
  return GetArtworkCountImp(handle);
}

std::int32_t GetArtworkInfo(ArtworkHandle* handle, std::int32_t index, ArtworkInfo* info) noexcept {
  return GetArtworkInfoImp(handle, index, info);
}

void CloseArtwork(ArtworkHandle* handle) noexcept {
  CloseArtworkImp(handle);
}

// 0 is also what success answers: a host cannot tell a null path from it. Kept.
std::int32_t AppendRingtone(const char* path) noexcept {
  if (path == nullptr) return 0;
  return AppendRingtoneImp(path);
}

}  // extern "C"
