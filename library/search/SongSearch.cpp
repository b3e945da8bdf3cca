#include "library/search/SongSearch.h"

#include <algorithm>
#include <array>
#include <optional>

#include "library/playlists/PlaylistQueries.h"
#include "library/search/ColumnCursor.h"
#include "library/search/FirstPositions.h"
#include "library/search/PlainSearch.h"
#include "library/search/SearchColumns.h"
#include "library/tracks/TrackTable.h"
#include "system/Memory.h"
#include "text/TextSearch.h"

namespace tavrel {

// What searches share, made by the first one. The document never changes after load.
struct SearchIndex {
  SearchColumns columns;
  FirstPositions positions;
};

namespace {

// None when there is no memory for it; the next search tries again.
SearchIndex* PreparedIndex(LibraryState& state) noexcept {
  if (state.searchIndex != nullptr) return state.searchIndex;
  auto* index = static_cast<SearchIndex*>(system::AllocateZeroed(sizeof(SearchIndex)));
  if (index == nullptr) return nullptr;
  const auto mostTracks = static_cast<std::uint32_t>(state.trackCount);
  if (!ReadSearchColumns(*state.document, mostTracks, index->columns)) {
    system::Release(index);
    return nullptr;
  }
  state.searchIndex = index;
  return index;
}

// One search.
class IndexedSearch {
 public:
  IndexedSearch(GlobalState* const& current, LibraryState& own, SearchIndex& index,
                SearchSongCallback callback, void* context) noexcept
      : current_(current), state_(&own), index_(index), callback_(callback), context_(context) {}

  // False when there is no memory for the terms.
  [[nodiscard]] bool Prepare(const SongInfo& terms) noexcept;
  [[nodiscard]] std::int32_t Run() noexcept;

 private:
  [[nodiscard]] std::uint32_t NextEvent(std::uint32_t track) const noexcept;
  [[nodiscard]] bool ReportMisses(std::uint32_t from, std::uint32_t end) const noexcept;
  [[nodiscard]] bool IsMatch(std::uint32_t track) const noexcept;
  [[nodiscard]] SongPosition PositionOf(std::uint32_t track) noexcept;
  void MoveTo(std::uint32_t track) noexcept;

  GlobalState* const& current_;
  LibraryState* state_;
  SearchIndex& index_;
  SearchSongCallback callback_;
  void* context_;
  std::array<std::optional<text::SearchTerm>, kSearchedFields.size()> terms_;
  std::array<std::optional<ColumnCursor>, kSearchedFields.size()> cursors_;
};

bool IndexedSearch::Prepare(const SongInfo& terms) noexcept {
  for (std::size_t i = 0; i < terms_.size(); ++i) {
    const char* term = terms.*kTrackFields[kSearchedFields[i]].text;
    if (term != nullptr && !terms_[i].emplace(term).IsPrepared()) return false;
  }
  const SearchColumns& columns = index_.columns;
  for (std::size_t i = 0; i < terms_.size(); ++i) {
    if (terms_[i]) cursors_[i].emplace(columns.texts, columns.columns[i], *terms_[i]);
  }
  return true;
}

// From event to event; all tracks between are misses.
std::int32_t IndexedSearch::Run() noexcept {
  const auto trackCount = static_cast<std::uint32_t>(index_.columns.trackIds.size());
  std::int32_t count = 0;
  for (std::uint32_t track = 0;; ++track) {
    const std::uint32_t event = NextEvent(track);
    if (!ReportMisses(track, event)) return count;
    if (event == trackCount) return count;
    track = event;
    SongPosition position = {};
    if (IsMatch(track)) {
      position = PositionOf(track);
      ++count;
    }
    if (callback_(position.playlist, position.index, context_) == 0) return count;
    MoveTo(track + 1);
  }
}

// False when the callback has ended the search.
bool IndexedSearch::ReportMisses(std::uint32_t from, std::uint32_t end) const noexcept {
  // Copies, which no callback can change: they need not be read again for each track.
  const SearchSongCallback callback = callback_;
  void* const context = context_;
  for (std::uint32_t track = from; track < end; ++track) {
    if (callback(nullptr, 0, context) == 0) return false;
  }
  return true;
}

// The first track from `track` on that is more than another miss.
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

SongPosition IndexedSearch::PositionOf(std::uint32_t track) noexcept {
  const std::span<const std::int32_t> trackIds = index_.columns.trackIds;
  if (current_ == state_) return index_.positions.Find(*state_, trackIds, track);
  SongPosition position = {};
  position.playlist = PlaylistOfTrack(current_, trackIds[track], &position.index);
  return position;
}

void IndexedSearch::MoveTo(std::uint32_t track) noexcept {
  for (auto& cursor : cursors_) {
    if (cursor) cursor->MoveTo(track);
  }
}

}  // namespace

std::int32_t SearchSongs(GlobalState* const& current, LibraryState* own, const SongInfo& terms,
                         SearchSongCallback callback, void* context) noexcept {
  if (current == nullptr) return 0;
  const TBXMLElement* tracks = TrackDictionary(current->document);
  if (tracks == nullptr) return 0;
  if (SearchIndex* index = own == nullptr ? nullptr : PreparedIndex(*own)) {
    IndexedSearch search(current, *own, *index, callback, context);
    if (search.Prepare(terms)) return search.Run();
  }
  return SearchPlainly(current, tracks, terms, callback, context);
}

void ReleaseSearchIndex(LibraryState& state) noexcept {
  SearchIndex*& index = state.searchIndex;
  if (index == nullptr) return;
  system::ReleaseBlock(index->columns.block);
  index->positions.Release();
  system::Release(index);
  index = nullptr;
}

}  // namespace tavrel
