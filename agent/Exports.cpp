// The functions that the library exports, but for those of Properties.cpp. What they do stands in library/;
// here they are given the loaded library, and nobody else asks which one that is.
#include "agent/Exports.h"

#include "agent/Lifecycle.h"
#include "library/artwork/ArtworkCatalogue.h"
#include "library/artwork/ArtworkHandle.h"
#include "library/artwork/SongArtwork.h"
#include "library/file/LibraryFile.h"
#include "library/file/PersistentId.h"
#include "library/file/PropertyValue.h"
#include "library/file/XmlText.h"
#include "library/playlists/PlaylistQueries.h"
#include "library/playlists/PlaylistTable.h"
#include "library/ringtones/RingtoneCatalogue.h"
#include "library/ringtones/RingtoneImport.h"
#include "library/search/PlainSearch.h"
#include "library/search/SongSearch.h"
#include "library/tracks/TrackProperties.h"
#include "library/tracks/TrackTable.h"

using tavrel::ArtworkLayouts;
using tavrel::CurrentLibrary;
using tavrel::LibraryState;

namespace {

// What builders and destroyers answer; to a record of the host's own they do nothing.
template <class Step>
std::int32_t WithCurrent(Step step) noexcept {
  if (LibraryState* state = CurrentLibrary()) step(*state);
  return 0;
}

ArtworkHandle* OpenArtworkOf(PlaylistRecord* playlist, std::int32_t index,
                             ArtworkLayouts layouts) noexcept {
  LibraryState* state = CurrentLibrary();
  if (state == nullptr) return nullptr;
  return tavrel::OpenSongArtwork(*state, tavrel::loadedState, playlist, index, layouts);
}

}  // namespace

extern "C" {

// ---- For hosts: each passes on to its implementation, some look at their pointers first ----------

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

// ---- Additions -----------------------------------------------------------------------------------

PlaylistRecord* OpenAllSongs() noexcept {
  LibraryState* state = CurrentLibrary();
  return state == nullptr ? nullptr : tavrel::AllSongs(*state);
}

ArtworkHandle* OpenArtworkAny(PlaylistRecord* playlist, std::int32_t index) noexcept {
  return OpenArtworkOf(playlist, index, ArtworkLayouts::Every);
}

ArtworkHandle* OpenArtworkFile(const char* path) noexcept {
  return path == nullptr ? nullptr : tavrel::OpenArtworkHandle(path, ArtworkLayouts::Every);
}

// ---- Implementations -----------------------------------------------------------------------------

std::int32_t AgentInitializerImp() noexcept {
  return tavrel::Load();
}

std::int32_t AgentFinalizerImp() noexcept {
  return tavrel::Unload();
}

std::int32_t GetPlaylistCountImp(std::int32_t groupIndex) noexcept {
  return tavrel::PlaylistCount(g_pGlobal, groupIndex);
}

PlaylistRecord* OpenPlaylistImp(std::int32_t groupIndex, std::int32_t index) noexcept {
  return tavrel::PlaylistAt(g_pGlobal, groupIndex, index);
}

std::int32_t ClosePlaylistImp(PlaylistRecord* playlist) noexcept {
  return playlist == nullptr ? 0 : 1;
}

std::int32_t GetPlaylistNameImp(std::int32_t groupIndex, std::int32_t index, char* buffer,
                                std::int32_t bufferSize) noexcept {
  const PlaylistRecord* playlist = tavrel::PlaylistAt(g_pGlobal, groupIndex, index);
  return tavrel::CopyPlaylistName(playlist, buffer, bufferSize);
}

std::int32_t GetPlaylistKindImp(const PlaylistRecord* playlist) noexcept {
  return playlist == nullptr ? 0 : playlist->kind;
}

std::int32_t GetSongCountImp(const PlaylistRecord* playlist) noexcept {
  return playlist == nullptr ? 0 : playlist->count;
}

std::int32_t GetSongInfoImp(PlaylistRecord* playlist, std::int32_t index, SongInfo* info) noexcept {
  TrackRecord* track = info == nullptr ? nullptr : tavrel::SongAt(playlist, index);
  if (track == nullptr) return 0;
  if (track->pendingDict != nullptr) tavrel::LoadTrackProperties(*track, tavrel::loadedState);
  return tavrel::CopySongInfo(track->info, *info);
}

std::int32_t SearchSongImp(const SongInfo* terms, SearchSongCallback callback,
                           void* context) noexcept {
  if (terms == nullptr || callback == nullptr) return 0;
  return tavrel::SearchSongs(g_pGlobal, CurrentLibrary(), *terms, callback, context);
}

ArtworkHandle* OpenArtworkImp(PlaylistRecord* playlist, std::int32_t index) noexcept {
  return OpenArtworkOf(playlist, index, ArtworkLayouts::Usual);
}

std::int32_t GetArtworkCountImp(const ArtworkHandle* handle) noexcept {
  return handle == nullptr ? 0 : handle->count;
}

std::int32_t GetArtworkInfoImp(ArtworkHandle* handle, std::int32_t index,
                               ArtworkInfo* info) noexcept {
  return tavrel::ReadArtworkInfo(handle, index, info);
}

void CloseArtworkImp(ArtworkHandle* handle) noexcept {
  tavrel::CloseArtworkHandle(handle);
}

std::int32_t AppendRingtoneImp(const char* path) noexcept {
  return tavrel::ImportRingtone(CurrentLibrary(), path);
}

// ---- Builders and destroyers ---------------------------------------------------------------------

std::int32_t CreateTrackArray() noexcept {
  return WithCurrent(tavrel::CreateTracks);
}

std::int32_t DestroyTrackArray() noexcept {
  return WithCurrent(tavrel::DestroyTracks);
}

std::int32_t CreatePlaylistArray() noexcept {
  return WithCurrent(tavrel::CreatePlaylists);
}

std::int32_t CreatePlaylistTrack(PlaylistRecord* playlist,
                                 const TBXMLElement* playlistDict) noexcept {
  if (playlist == nullptr || playlistDict == nullptr || g_pGlobal == nullptr) return 0;
  tavrel::AppendTracks(*g_pGlobal, *playlist, playlistDict);
  return 0;
}

// The ringtone playlist goes first: its songs and its name are not the table's.
std::int32_t DestroyPlaylistArray() noexcept {
  return WithCurrent([](LibraryState& state) {
    tavrel::DestroyRingtones(state);
    tavrel::DestroyPlaylists(state);
  });
}

std::int32_t CreateRingtoneArray() noexcept {
  return WithCurrent(tavrel::CreateRingtones);
}

std::int32_t DestroyRingtoneArray() noexcept {
  return WithCurrent(tavrel::DestroyRingtones);
}

std::int32_t CreateArtworkArray() noexcept {
  return WithCurrent(tavrel::CreateArtworkCatalogue);
}

std::int32_t DestroyArtworkArray() noexcept {
  return WithCurrent(tavrel::DestroyArtworkCatalogue);
}

// ---- Readers -------------------------------------------------------------------------------------

TBXML* OpenXML() noexcept {
  const LibraryState* state = CurrentLibrary();
  return tavrel::OpenLibraryFile(state == nullptr ? nullptr : state->home);
}

PlaylistRecord* GetPlaylistByTrackId(std::int32_t trackId, std::int32_t* index) noexcept {
  return tavrel::PlaylistOfTrack(g_pGlobal, trackId, index);
}

std::int32_t ReadSongProp(const TBXMLElement* dict, const char* key, char** text,
                          std::int32_t* value, std::int32_t flags) noexcept {
  return tavrel::ReadProperty(dict, key, text, value, flags);
}

std::int32_t RestoreXMLEscChar(char* destination, const char* source,
                               std::int32_t destinationSize) noexcept {
  return tavrel::DecodeXmlText(destination, source, destinationSize);
}

std::int32_t PersistentId2Buf(const char* text, std::uint8_t* bytes) noexcept {
  return tavrel::ParsePersistentId(text, bytes);
}

std::int32_t FilterPropMatch(const TBXMLElement* trackDict, const char* key,
                             const char* term) noexcept {
  return tavrel::PropertyMatches(trackDict, key, term) ? 1 : 0;
}

}  // extern "C"
