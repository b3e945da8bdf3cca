#include "library/search/SongSearch.h"

#include <span>

#include "library/playlists/PlaylistQueries.h"
#include "library/search/FirstPositions.h"
#include "library/search/PlainSearch.h"
#include "library/search/SearchIndex.h"
#include "library/search/TrackMatcher.h"
#include "library/tracks/TrackTable.h"

namespace tavrel {
namespace {

// One search.
class IndexedSearch {
 public:
  IndexedSearch(GlobalState* const& current, LibraryState& own, SearchIndex& index,
                SearchSongCallback callback, void* context) noexcept
      : current_(current),
        state_(&own),
        index_(index),
        matcher_(index.columns),
        callback_(callback),
        context_(context) {}

  // False when there is no memory for the terms.
  [[nodiscard]] bool Prepare(const SongInfo& terms) noexcept { return matcher_.Prepare(terms); }
  [[nodiscard]] std::int32_t Run() noexcept;

 private:
  [[nodiscard]] bool ReportMisses(std::uint32_t from, std::uint32_t end) const noexcept;
  [[nodiscard]] SongPosition PositionOf(std::uint32_t track) noexcept;

  GlobalState* const& current_;
  LibraryState* state_;
  SearchIndex& index_;
  TrackMatcher matcher_;
  SearchSongCallback callback_;
  void* context_;
};

// From event to event; all tracks between are misses.
std::int32_t IndexedSearch::Run() noexcept {
  const std::uint32_t trackCount = matcher_.trackCount();
  std::int32_t count = 0;
  for (std::uint32_t track = 0;; ++track) {
    const std::uint32_t event = matcher_.NextEvent(track);
    if (!ReportMisses(track, event)) return count;
    if (event == trackCount) return count;
    track = event;
    SongPosition position = {};
    if (matcher_.IsMatch(track)) {
      position = PositionOf(track);
      ++count;
    }
    if (callback_(position.playlist, position.index, context_) == 0) return count;
    matcher_.MoveTo(track + 1);
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

SongPosition IndexedSearch::PositionOf(std::uint32_t track) noexcept {
  const std::span<const std::int32_t> trackIds = index_.columns.trackIds;
  if (current_ == state_) return index_.positions.Find(*state_, trackIds, track);
  SongPosition position = {};
  position.playlist = PlaylistOfTrack(current_, trackIds[track], &position.index);
  return position;
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

}  // namespace tavrel
