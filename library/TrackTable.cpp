#include "library/TrackTable.h"

#include "library/GrowingTable.h"
#include "library/Numbers.h"
#include "library/PersistentId.h"
#include "library/PropertyList.h"
#include "platform/Memory.h"
#include "xml/TBXML.h"

namespace {

void ReadTracks(const TBXMLElement* trackDictionary) noexcept {
  GlobalState& state = *g_pGlobal;
  tavrel::TableAppender<TrackRecord> table(state.tracks, state.trackCapacity, state.trackCount);
  const TBXMLElement* key = trackDictionary->firstChild;
  while (key != nullptr && key->nextSibling != nullptr) {
    const TBXMLElement* dict = key->nextSibling;
    auto* track =
        static_cast<TrackRecord*>(tavrel::Private().trackRecords.Take(sizeof(TrackRecord)));
    if (track == nullptr || !table.Reserve()) return;
    track->trackId = tavrel::TrackIdOf(dict);
    track->pendingDict = dict;
    table.Append(track);
    key = dict->nextSibling;
  }
}

void ReadPersistentId(const TBXMLElement* dict, const char* key, std::uint8_t* bytes) noexcept {
  char* text = nullptr;
  std::int32_t size = 0;
  ReadSongProp(dict, key, &text, &size, SONGPROP_TEXT);
  PersistentId2Buf(text, bytes);
  tavrel::platform::Release(text);
}

void ReleaseTexts(const SongInfo& info) noexcept {
  for (char* text : {info.name, info.location, info.artist, info.album, info.genre}) {
    tavrel::platform::Release(text);
  }
}

}  // namespace

const TBXMLElement* tavrel::TrackDictionary() noexcept {
  const TBXMLElement* top = TopLevelDictionary();
  return top == nullptr ? nullptr : TBXML::childElementNamed("dict", top);
}

std::int32_t tavrel::TrackIdOf(const TBXMLElement* trackDict) noexcept {
  const TBXMLElement* value = FirstValue(trackDict);
  return value == nullptr || value->text == nullptr ? 0 : ReadDecimal(value->text);
}

void tavrel::LoadTrackProperties(TrackRecord& track) noexcept {
  const TBXMLElement* dict = track.pendingDict;
  SongInfo& info = track.info;
  ReadSongProp(dict, "Name", &info.name, &info.nameSize, SONGPROP_TEXT);
  ReadSongProp(dict, "Location", &info.location, &info.locationSize, SONGPROP_TEXT | SONGPROP_URL);
  ReadSongProp(dict, "Artist", &info.artist, &info.artistSize, SONGPROP_TEXT);
  ReadSongProp(dict, "Album", &info.album, &info.albumSize, SONGPROP_TEXT);
  ReadSongProp(dict, "Genre", &info.genre, &info.genreSize, SONGPROP_TEXT);
  ReadSongProp(dict, "Total Time", nullptr, &info.totalTime, 0);
  ReadSongProp(dict, "Play Count", nullptr, &info.playCount, 0);
  ReadSongProp(dict, "Movie", nullptr, &info.movie, 0);
  ReadSongProp(dict, "Track Number", nullptr, &info.trackNumber, 0);
  ReadPersistentId(dict, "Persistent ID", track.persistentId);
  track.pendingDict = nullptr;
}

std::int32_t CreateTrackArray() noexcept {
  const TBXMLElement* tracks = tavrel::TrackDictionary();
  if (tracks == nullptr) return 0;
  ReadTracks(tracks);
  ReadPersistentId(tavrel::TopLevelDictionary(), "Library Persistent ID",
                   g_pGlobal->libraryPersistentId);
  return 0;
}

// The table's fields are not reset: the global record is freed right after.
std::int32_t DestroyTrackArray() noexcept {
  if (g_pGlobal == nullptr || tavrel::Private().tracksDestroyed) return 0;
  tavrel::Private().tracksDestroyed = true;
  for (std::int32_t i = 0; i < g_pGlobal->trackCount; ++i) ReleaseTexts(g_pGlobal->tracks[i]->info);
  tavrel::Private().trackRecords.ReleaseAll();
  tavrel::platform::Release(g_pGlobal->tracks);
  return 0;
}
