#include "library/tracks/TrackTable.h"

#include <span>

#include "library/TableAppender.h"
#include "library/file/PropertyList.h"
#include "library/file/PropertyValue.h"
#include "library/tracks/TrackLookahead.h"
#include "system/Memory.h"
#include "xml/TBXML.h"

namespace tavrel {
namespace {

// Of each track its dictionary, its first pair and the text of that are read.
using Lookahead = TrackLookahead<24, 12, 2, 1>;

void ReadTracks(LibraryState& state, const TBXMLElement* trackDictionary) noexcept {
  const std::span<TBXMLElement* const> dictionaries = state.document->listedElements();
  state.trackRecords.Reserve(dictionaries.size() * sizeof(OwnTrack));
  TableAppender<TrackRecord> table(state.tracks, state.trackCapacity, state.trackCount);
  Lookahead lookahead(dictionaries);
  for (const auto [key, dict] : Pairs(trackDictionary)) {
    lookahead.Advance();
    auto* track = static_cast<OwnTrack*>(state.trackRecords.Take(sizeof(OwnTrack)));
    if (track == nullptr || !table.Reserve()) return;
    track->trackId = TrackIdOf(dict);
    track->pendingDict = dict;
    track->properties = dict;
    table.Append(track);
  }
}

// Texts that were read while another library was the loaded one do not go with all others.
void ReleaseTexts(const LibraryState& state, const SongInfo& info) noexcept {
  for (char* text : {info.name, info.location, info.artist, info.album, info.genre}) {
    const bool isOwn = text == nullptr || state.trackTexts.Holds(text);
    if (!isOwn) system::Release(text);
  }
}

}  // namespace

const TBXMLElement* PropertiesOf(const LibraryState& state, const TrackRecord* track) noexcept {
  if (track == nullptr || !state.trackRecords.Holds(track)) return nullptr;
  return static_cast<const OwnTrack*>(track)->properties;
}

const TBXMLElement* TrackDictionary(const TBXML* document) noexcept {
  return TopLevelChild(document, "dict");
}

std::int32_t TrackIdOf(const TBXMLElement* trackDict) noexcept {
  return NumberOf(FirstValue(trackDict));
}

void CreateTracks(LibraryState& state) noexcept {
  const TBXMLElement* tracks = TrackDictionary(state.document);
  if (tracks == nullptr) return;
  ReadTracks(state, tracks);
  ReadPersistentId(FindValue(TopLevelDictionary(state.document), "Library Persistent ID"),
                   state.libraryPersistentId);
}

// The table's fields are not reset: the global record is freed right after.
void DestroyTracks(LibraryState& state) noexcept {
  if (state.tracksDestroyed) return;
  state.tracksDestroyed = true;
  for (std::int32_t i = 0; i < state.trackCount; ++i) ReleaseTexts(state, state.tracks[i]->info);
  state.trackRecords.ReleaseAll();
  state.trackTexts.ReleaseAll();
  system::Release(state.tracks);
}

}  // namespace tavrel
