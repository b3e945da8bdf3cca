// The exported functions that the public header does not declare: the implementations behind its
// functions, the builders and destroyers of load and unload, and the readers. Arguments and results of
// the implementations are those of the functions without the ending Imp (include/tavrel/tavrel.h);
// builders and destroyers answer 0 in every case. All work on the library behind `g_pGlobal`.
#pragma once

#include <cstdint>

#include "agent/Lifecycle.h"
#include "library/State.h"
#include "tavrel/tavrel.h"
#include "xml/Records.h"

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
// Appends the tracks that the items of a playlist's dictionary name to `playlist`, which may be a
// record of the caller's own; its array is then of the malloc family and the caller's. Null arguments
// change nothing.
TAVREL_API std::int32_t CreatePlaylistTrack(PlaylistRecord* playlist,
                                            const TBXMLElement* playlistDict) noexcept;
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
TAVREL_API std::int32_t SearchSongImp(const SongInfo* terms, SearchSongCallback callback,
                                      void* context) noexcept;
TAVREL_API ArtworkHandle* OpenArtworkImp(PlaylistRecord* playlist, std::int32_t index) noexcept;
TAVREL_API std::int32_t GetArtworkCountImp(const ArtworkHandle* handle) noexcept;
TAVREL_API std::int32_t GetArtworkInfoImp(ArtworkHandle* handle, std::int32_t index,
                                          ArtworkInfo* info) noexcept;
TAVREL_API void CloseArtworkImp(ArtworkHandle* handle) noexcept;
// A null path gives -1 here, after a message of its own.
TAVREL_API std::int32_t AppendRingtoneImp(const char* path) noexcept;

// The first playlist that holds a track with that ID, groups and playlists in their order.
// index: receives the track's position in it; untouched when there is none; may be null.
// Cost:  a scan of every playlist up to that position.
TAVREL_API PlaylistRecord* GetPlaylistByTrackId(std::int32_t trackId, std::int32_t* index) noexcept;

// Readers, which look at nothing but their arguments.

// Reads the value of the first pair of a dictionary whose key is exactly `key`: see ReadProperty() in
// library/file/PropertyValue.h. A text is the caller's, who releases it with free().
TAVREL_API std::int32_t ReadSongProp(const TBXMLElement* dict, const char* key, char** text,
                                     std::int32_t* value, std::int32_t flags) noexcept;

// Decodes XML references: see DecodeXmlText() in library/file/XmlText.h.
TAVREL_API std::int32_t RestoreXMLEscChar(char* destination, const char* source,
                                          std::int32_t destinationSize) noexcept;

// Turns 16 hexadecimal digits into 8 bytes: see ParsePersistentId() in library/file/PersistentId.h.
TAVREL_API std::int32_t PersistentId2Buf(const char* text, std::uint8_t* bytes) noexcept;

// Whether the text of `key` in a track's dictionary contains `term`, 1 or 0: see PropertyMatches() in
// library/search/PlainSearch.h.
TAVREL_API std::int32_t FilterPropMatch(const TBXMLElement* trackDict, const char* key,
                                        const char* term) noexcept;
}
