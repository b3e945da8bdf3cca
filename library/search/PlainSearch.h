// The song search in its plainest form, which reads everything afresh from the library file's text
// for every track. It answers when there is no memory for anything faster, and is what the faster
// search is compared with.
#pragma once

#include <cstdint>

#include "agent/Implementations.h"
#include "tavrel/tavrel.h"
#include "xml/Records.h"

// Whether the text of `key` in a track's dictionary contains `term`, as SearchSong() matches texts:
// 1 or 0. Null arguments, a missing key and a value without a text give 0. A text whose references
// are in error is searched as far as it was decoded, after a line in the system log.
// Cost: linear in both texts, which are prepared afresh.
extern "C" TAVREL_API std::int32_t FilterPropMatch(const TBXMLElement* trackDict, const char* key,
                                                   const char* term) noexcept;

namespace tavrel {

// As SearchSong(), over the tracks of a track dictionary. No argument may be null but the context.
[[nodiscard]] std::int32_t SearchPlainly(const TBXMLElement* trackDictionary, const SongInfo& terms,
                                         SearchSongCallback callback, void* context) noexcept;

}  // namespace tavrel
