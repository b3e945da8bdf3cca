// The song search over columns of texts that are ready to be searched.
#include <algorithm>
#include <array>
#include <optional>

#include "agent/Implementations.h"
#include "library/file/TextDecoding.h"
#include "library/playlists/PlaylistTable.h"
#include "library/search/PlainSearch.h"
#include "library/search/SearchColumns.h"
#include "library/search/SongPlaces.h"
#include "library/tracks/TrackTable.h"
#include "system/Memory.h"
#include "text/TextSearch.h"

namespace tavrel {

// What searches share, made by the first one. The document never changes after load.
struct SearchIndex {
  SearchColumns columns;
  SongPlaces places;
};

namespace {

// None when there is no memory for it; the next search tries again.
SearchIndex* PreparedIndex(const TBXMLElement* trackDictionary) noexcept {
  PrivateState& state = Private();
  if (state.searchIndex != nullptr) return state.searchIndex;
  auto* index = static_cast<SearchIndex*>(system::AllocateZeroed(sizeof(SearchIndex)));
  if (index == nullptr) return nullptr;
  const auto mostTracks = static_cast<std::uint32_t>(state.shared.trackCount);
  if (!ReadSearchColumns(trackDictionary, mostTracks, index->columns)) {
    system::Release(index);
    return nullptr;
  }
  state.searchIndex = index;
  return index;
}

// The tracks at which one term's column has something to tell, in their order: a match, or a faulty
// text to be logged.
class ColumnCursor {
 public:
  ColumnCursor(const text::FoldedTexts& texts, const SearchColumn& column,
               const text::SearchTerm& term) noexcept
      : texts_(texts), runs_(column.runs), faulty_(column.faulty), term_(term) {
    FindMatch();
    NoteEvent();
  }

  // The first track, from the present one on or before it, of which there is something to tell; the
  // number of tracks when there is none.
  [[nodiscard]] std::uint32_t event() const noexcept { return event_; }

  // Tests the text of `track`, to which the cursor has come.
  [[nodiscard]] bool Test(std::uint32_t track) const noexcept {
    if (!faulty_.empty() && faulty_.front().firstTrack <= track) LogFault(faulty_.front().source);
    return runs_.front().firstTrack <= track;
  }

  // Comes to `track`, which is at most one behind the event.
  void MoveTo(std::uint32_t track) noexcept {
    if (track < eventEnd_) return;
    if (!faulty_.empty() && faulty_.front().endTrack <= track) faulty_ = faulty_.subspan(1);
    if (runs_.size() > 1 && runs_[1].firstTrack <= track) {
      runs_ = runs_.subspan(1);
      FindMatch();
    }
    NoteEvent();
  }

 private:
  void FindMatch() noexcept;
  void NoteEvent() noexcept;

  // Decoding once more, with no room for the result, writes the line.
  static void LogFault(const char* source) noexcept {
    char none = 0;
    (void)RestoreXMLEscChar(&none, source, 0);
  }

  const text::FoldedTexts& texts_;
  std::span<const TextRun> runs_;  // from the matching one on; only the end when none is left
  std::span<const FaultyText> faulty_;
  const text::SearchTerm& term_;
  std::uint32_t event_ = 0;
  std::uint32_t eventEnd_ = 0;  // the first track at which the event may be another one
};

// Leaves the runs from the first one that matches.
void ColumnCursor::FindMatch() noexcept {
  const std::size_t place = term_.FindIn(texts_, runs_.front().text, runs_.back().text);
  if (place == text::kNotFound) {
    runs_ = runs_.last(1);
    return;
  }
  // The run that the place is in is mostly near.
  std::size_t step = 1;
  while (step < runs_.size() && runs_[step].text <= place) step *= 2;
  const auto last = runs_.begin() + static_cast<std::ptrdiff_t>(std::min(step, runs_.size()));
  const auto behind =
      std::upper_bound(runs_.begin() + static_cast<std::ptrdiff_t>(step / 2), last, place,
                       [](std::size_t text, const TextRun& run) { return text < run.text; });
  runs_ = runs_.subspan(static_cast<std::size_t>(behind - runs_.begin()) - 1);
}

void ColumnCursor::NoteEvent() noexcept {
  event_ = runs_.front().firstTrack;
  eventEnd_ = runs_.size() > 1 ? runs_[1].firstTrack : event_;
  if (faulty_.empty()) return;
  event_ = std::min(event_, faulty_.front().firstTrack);
  eventEnd_ = std::min(eventEnd_, faulty_.front().endTrack);
}

// One search.
class IndexedSearch {
 public:
  IndexedSearch(SearchIndex& index, SearchSongCallback callback, void* context) noexcept
      : index_(index), state_(Private()), callback_(callback), context_(context) {}

  // False when there is no memory for the terms.
  [[nodiscard]] bool Prepare(const SongInfo& terms) noexcept;
  [[nodiscard]] std::int32_t Run() noexcept;

 private:
  [[nodiscard]] std::uint32_t NextEvent(std::uint32_t track) const noexcept;
  [[nodiscard]] bool IsMatch(std::uint32_t track) const noexcept;
  [[nodiscard]] SongPlace PlaceOf(std::uint32_t track) noexcept;
  void MoveTo(std::uint32_t track) noexcept;

  SearchIndex& index_;
  const PrivateState& state_;
  SearchSongCallback callback_;
  void* context_;
  std::array<std::optional<text::SearchTerm>, kSearchKeys.size()> terms_;
  std::array<std::optional<ColumnCursor>, kSearchKeys.size()> cursors_;
};

bool IndexedSearch::Prepare(const SongInfo& terms) noexcept {
  const std::array<const char*, kSearchKeys.size()> texts = {terms.name, terms.artist, terms.album};
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (texts[i] == nullptr) continue;
    if (!terms_[i].emplace(texts[i]).IsPrepared()) return false;
  }
  const SearchColumns& columns = index_.columns;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (terms_[i]) cursors_[i].emplace(columns.texts, columns.columns[i], *terms_[i]);
  }
  return true;
}

std::int32_t IndexedSearch::Run() noexcept {
  const auto trackCount = static_cast<std::uint32_t>(index_.columns.trackIds.size());
  // Copies, which no callback can change: they need not be read again for each track.
  const SearchSongCallback callback = callback_;
  void* const context = context_;
  std::int32_t count = 0;
  for (std::uint32_t track = 0;; ++track) {
    for (const std::uint32_t next = NextEvent(track); track < next; ++track) {
      if (callback(nullptr, 0, context) == 0) return count;
    }
    if (track == trackCount) return count;
    SongPlace place = {};
    if (IsMatch(track)) {
      place = PlaceOf(track);
      ++count;
    }
    if (callback(place.playlist, place.position, context) == 0) return count;
    MoveTo(track + 1);
  }
}

// The first track from `track` on that is more than another one without a match.
std::uint32_t IndexedSearch::NextEvent(std::uint32_t track) const noexcept {
  auto next = static_cast<std::uint32_t>(index_.columns.trackIds.size());
  for (const auto& cursor : cursors_) {
    if (cursor) next = std::min(next, cursor->event());
  }
  return std::max(next, track);
}

// The texts behind the first that matches are not looked at.
bool IndexedSearch::IsMatch(std::uint32_t track) const noexcept {
  return std::any_of(cursors_.begin(), cursors_.end(),
                     [track](const auto& cursor) { return cursor && cursor->Test(track); });
}

// Should a callback have loaded another library, it is that one's playlists that count.
SongPlace IndexedSearch::PlaceOf(std::uint32_t track) noexcept {
  const std::span<const std::int32_t> trackIds = index_.columns.trackIds;
  if (&Private() == &state_) return index_.places.Find(trackIds, track);
  SongPlace place = {};
  place.playlist = GetPlaylistByTrackId(trackIds[track], &place.position);
  return place;
}

void IndexedSearch::MoveTo(std::uint32_t track) noexcept {
  for (auto& cursor : cursors_) {
    if (cursor) cursor->MoveTo(track);
  }
}

}  // namespace

void ReleaseSearchIndex() noexcept {
  SearchIndex*& index = Private().searchIndex;
  if (index == nullptr) return;
  system::ReleaseBlock(index->columns.block);
  index->places.Release();
  system::Release(index);
  index = nullptr;
}

}  // namespace tavrel

std::int32_t SearchSongImp(const SongInfo* terms, SearchSongCallback callback,
                           void* context) noexcept {
  if (terms == nullptr || callback == nullptr) return 0;
  const TBXMLElement* tracks = tavrel::TrackDictionary();
  if (tracks == nullptr) return 0;
  if (tavrel::SearchIndex* index = tavrel::PreparedIndex(tracks)) {
    tavrel::IndexedSearch search(*index, callback, context);
    if (search.Prepare(*terms)) return search.Run();
  }
  return tavrel::SearchPlainly(tracks, *terms, callback, context);
}
