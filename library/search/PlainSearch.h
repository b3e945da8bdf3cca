// The song search in its plainest form, which reads everything afresh from the library file's text
// for every track. It answers when there is no memory for anything faster, and is what the faster
// search is compared with.
#pragma once

#include <cstdint>

#include "library/State.h"
#include "tavrel/tavrel.h"
#include "xml/Records.h"

namespace tavrel {

// Whether the text of `key` in a track's dictionary contains `term`, as SearchSong() matches texts.
// Null arguments, a missing key and a value without a text give false. A text whose references
// are in error is searched as far as it was decoded, after a line in the system log.
// Cost: linear in both texts, which are prepared afresh.
[[nodiscard]] bool PropertyMatches(const TBXMLElement* trackDict, const char* key,
                                   const char* term) noexcept;

// As SearchSong(), over the tracks of a track dictionary.
// current: the loaded library, whose playlists count; looked at afresh for each match, since a callback
//          may load another.
[[nodiscard]] std::int32_t SearchPlainly(GlobalState* const& current,
                                         const TBXMLElement* trackDictionary, const SongInfo& terms,
                                         SearchSongCallback callback, void* context) noexcept;

// As FindSongs(), over the first `mostTracks` tracks of a track dictionary: those that have a record.
[[nodiscard]] std::int32_t FindPlainly(const TBXMLElement* trackDictionary, std::int32_t mostTracks,
                                       const SongInfo& terms, FindSongsCallback callback,
                                       void* context) noexcept;

}  // namespace tavrel
