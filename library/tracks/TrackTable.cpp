#include "library/tracks/TrackTable.h"

#include <span>

#include "library/TableAppender.h"
#include "library/file/PersistentId.h"
#include "library/file/PropertyList.h"
#include "system/Memory.h"
#include "text/Numbers.h"
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
  const std::span<TBXMLElement* const> dictionaries = state.document->listedElements();
  tavrel::Private().trackRecords.Reserve(dictionaries.size() * sizeof(TrackRecord));
  Lookahead lookahead(dictionaries);
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

// Texts that were read while another library was the loaded one do not go with all others.
void ReleaseTexts(const SongInfo& info) noexcept {
  for (char* text : {info.name, info.location, info.artist, info.album, info.genre}) {
    const bool isOwn = text == nullptr || tavrel::Private().trackTexts.Holds(text);
    if (!isOwn) tavrel::system::Release(text);
  }
}

}  // namespace

const TBXMLElement* tavrel::TrackDictionary() noexcept {
  const TBXMLElement* top = TopLevelDictionary();
  return top == nullptr ? nullptr : TBXML::childElementNamed("dict", top);
}

std::int32_t tavrel::TrackIdOf(const TBXMLElement* trackDict) noexcept {
  const TBXMLElement* value = FirstValue(trackDict);
  return value == nullptr || value->text == nullptr ? 0 : tavrel::text::ReadDecimal(value->text);
}

std::int32_t CreateTrackArray() noexcept {
  const TBXMLElement* tracks = tavrel::TrackDictionary();
  if (tracks == nullptr) return 0;
  ReadTracks(tracks);
  tavrel::ReadPersistentId(tavrel::FindValue(tavrel::TopLevelDictionary(), "Library Persistent ID"),
                           g_pGlobal->libraryPersistentId);
  return 0;
}

// The table's fields are not reset: the global record is freed right after.
std::int32_t DestroyTrackArray() noexcept {
  if (g_pGlobal == nullptr || tavrel::Private().tracksDestroyed) return 0;
  tavrel::Private().tracksDestroyed = true;
  for (std::int32_t i = 0; i < g_pGlobal->trackCount; ++i) ReleaseTexts(g_pGlobal->tracks[i]->info);
  tavrel::Private().trackRecords.ReleaseAll();
  tavrel::Private().trackTexts.ReleaseAll();
  tavrel::system::Release(g_pGlobal->tracks);
  return 0;
}
