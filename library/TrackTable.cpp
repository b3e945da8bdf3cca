#include "library/TrackTable.h"

#include <iterator>
#include <span>

#include "library/GrowingTable.h"
#include "library/Numbers.h"
#include "library/PersistentId.h"
#include "library/PropertyList.h"
#include "platform/Memory.h"
#include "xml/TBXML.h"

namespace {

// A track's dictionary lies thousands of bytes behind the one before it, too far for the machine to
// see it coming. The document's hints tell where; a wrong one costs nothing but the look.
class Lookahead {
 public:
  explicit Lookahead(std::span<TBXMLElement* const> dictionaries) noexcept
      : dictionaries_(dictionaries) {}

  void Advance() noexcept {
    if (next_ + kFar < dictionaries_.size()) {
      // The key element before it, the dictionary itself and its first pair: four records in a row.
      const TBXMLElement* dict = dictionaries_[next_ + kFar];
      for (int i = -1; i <= 2; ++i) __builtin_prefetch(dict + i);
    }
    if (next_ + kNear < dictionaries_.size()) {
      const TBXMLElement* value = tavrel::FirstValue(dictionaries_[next_ + kNear]);
      if (value != nullptr) __builtin_prefetch(value->text);
    }
    ++next_;
  }

 private:
  static constexpr std::size_t kFar = 24;
  static constexpr std::size_t kNear = 12;

  std::span<TBXMLElement* const> dictionaries_;
  std::size_t next_ = 0;
};

void ReadTracks(const TBXMLElement* trackDictionary) noexcept {
  GlobalState& state = *g_pGlobal;
  tavrel::TableAppender<TrackRecord> table(state.tracks, state.trackCapacity, state.trackCount);
  Lookahead lookahead(state.document->fourthLevel());
  const TBXMLElement* key = trackDictionary->firstChild;
  while (key != nullptr && key->nextSibling != nullptr) {
    lookahead.Advance();
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

void ReadPersistentId(const TBXMLElement* value, std::uint8_t* bytes) noexcept {
  char* text = nullptr;
  std::int32_t size = 0;
  tavrel::ReadValue(value, &text, &size, SONGPROP_TEXT);
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

// The keys are found in one walk, and their values then read in the order of the record.
void tavrel::LoadTrackProperties(TrackRecord& track) noexcept {
  static constexpr const char* kKeys[] = {"Name",         "Location",     "Artist",     "Album",
                                          "Genre",        "Total Time",   "Play Count", "Movie",
                                          "Track Number", "Persistent ID"};
  const TBXMLElement* values[std::size(kKeys)];
  FindValues(track.pendingDict, kKeys, values);
  const TBXMLElement* const* value = values;
  SongInfo& info = track.info;
  ReadValue(*value++, &info.name, &info.nameSize, SONGPROP_TEXT);
  ReadValue(*value++, &info.location, &info.locationSize, SONGPROP_TEXT | SONGPROP_URL);
  ReadValue(*value++, &info.artist, &info.artistSize, SONGPROP_TEXT);
  ReadValue(*value++, &info.album, &info.albumSize, SONGPROP_TEXT);
  ReadValue(*value++, &info.genre, &info.genreSize, SONGPROP_TEXT);
  ReadValue(*value++, nullptr, &info.totalTime, 0);
  ReadValue(*value++, nullptr, &info.playCount, 0);
  ReadValue(*value++, nullptr, &info.movie, 0);
  ReadValue(*value++, nullptr, &info.trackNumber, 0);
  ReadPersistentId(*value, track.persistentId);
  track.pendingDict = nullptr;
}

std::int32_t CreateTrackArray() noexcept {
  const TBXMLElement* tracks = tavrel::TrackDictionary();
  if (tracks == nullptr) return 0;
  ReadTracks(tracks);
  ReadPersistentId(tavrel::FindValue(tavrel::TopLevelDictionary(), "Library Persistent ID"),
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
