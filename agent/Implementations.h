// What the agent calls: the implementations behind the exported functions, and the builders and
// destroyers of the load and unload sequences. The agent owns this interface, the library model
// supplies the bodies. Arguments and results are those of the functions without the ending Imp
// (include/tavrel/tavrel.h); builders and destroyers take nothing and answer 0 in every case.
#pragma once

#include "library/State.h"
#include "tavrel/tavrel.h"

extern "C" {

TAVREL_API std::int32_t AgentInitializerImp() noexcept;
TAVREL_API std::int32_t AgentFinalizerImp() noexcept;

// The parsed library file of the load's home folder, owned by the caller. When it cannot be used,
// one line goes to the system log and the result is none.
TAVREL_API TBXML* OpenXML() noexcept;

TAVREL_API std::int32_t CreateTrackArray() noexcept;
TAVREL_API std::int32_t DestroyTrackArray() noexcept;
TAVREL_API std::int32_t CreatePlaylistArray() noexcept;
TAVREL_API std::int32_t DestroyPlaylistArray() noexcept;
// Called again, it lists the folder anew in a playlist that takes the place of the former one.
TAVREL_API std::int32_t CreateRingtoneArray() noexcept;
// Takes no other playlist away when the ringtone playlist is not there.
TAVREL_API std::int32_t DestroyRingtoneArray() noexcept;

// Appends the cache files that the artwork folder holds now to the catalogue.
TAVREL_API std::int32_t CreateArtworkArray() noexcept;
TAVREL_API std::int32_t DestroyArtworkArray() noexcept;

TAVREL_API std::int32_t GetPlaylistCountImp(std::int32_t groupIndex) noexcept;
TAVREL_API PlaylistRecord* OpenPlaylistImp(std::int32_t groupIndex, std::int32_t index) noexcept;
TAVREL_API std::int32_t ClosePlaylistImp(PlaylistRecord* playlist) noexcept;
TAVREL_API std::int32_t GetPlaylistNameImp(std::int32_t groupIndex, std::int32_t index,
                                           char* buffer, std::int32_t bufferSize) noexcept;
TAVREL_API std::int32_t GetPlaylistKindImp(const PlaylistRecord* playlist) noexcept;
TAVREL_API std::int32_t GetSongCountImp(const PlaylistRecord* playlist) noexcept;
TAVREL_API std::int32_t GetSongInfoImp(PlaylistRecord* playlist, std::int32_t index,
                                       SongInfo* info) noexcept;

TAVREL_API ArtworkHandle* OpenArtworkImp(PlaylistRecord* playlist, std::int32_t index) noexcept;
TAVREL_API std::int32_t GetArtworkCountImp(const ArtworkHandle* handle) noexcept;
TAVREL_API std::int32_t GetArtworkInfoImp(ArtworkHandle* handle, std::int32_t index,
                                          ArtworkInfo* info) noexcept;
TAVREL_API void CloseArtworkImp(ArtworkHandle* handle) noexcept;

TAVREL_API std::int32_t SearchSongImp(const SongInfo* terms, SearchSongCallback callback,
                                      void* context) noexcept;

// A null path gives -1 here, after a message of its own.
TAVREL_API std::int32_t AppendRingtoneImp(const char* path) noexcept;
}

namespace tavrel {

// Gives back what searches have made. `g_pGlobal` must be set.
void ReleaseSearchIndex() noexcept;

}  // namespace tavrel
