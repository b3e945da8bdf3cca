// Which tracks match a search's terms: walks the columns of all terms side by side, from event to event
// (see ColumnCursor.h). The terms are alternatives.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

#include "library/search/ColumnCursor.h"
#include "library/search/SearchColumns.h"
#include "tavrel/tavrel.h"
#include "text/TextSearch.h"

namespace tavrel {

class TrackMatcher {
 public:
  // columns: borrowed.
  explicit TrackMatcher(const SearchColumns& columns) noexcept : columns_(columns) {}

  // Comes to the first track. False when there is no memory for the terms, which are read here only.
  [[nodiscard]] bool Prepare(const SongInfo& terms) noexcept;

  [[nodiscard]] std::uint32_t trackCount() const noexcept {
    return static_cast<std::uint32_t>(columns_.trackIds.size());
  }

  // The first track from `track` on at which there is more to tell than another miss; the number of tracks
  // when there is none.
  [[nodiscard]] std::uint32_t NextEvent(std::uint32_t track) const noexcept {
    std::uint32_t next = trackCount();
    for (const auto& cursor : cursors_) {
      if (cursor) next = std::min(next, cursor->event());
    }
    return std::max(next, track);
  }

  // Whether `track`, to which the matcher has come, matches; logs the faults of the texts that it looks at:
  // those behind the first that matches are not looked at.
  [[nodiscard]] bool IsMatch(std::uint32_t track) const noexcept {
    return std::any_of(cursors_.begin(), cursors_.end(),
                       [track](const auto& cursor) { return cursor && cursor->Test(track); });
  }

  // Comes to `track`, which is at most one behind the event.
  void MoveTo(std::uint32_t track) noexcept {
    for (auto& cursor : cursors_) {
      if (cursor) cursor->MoveTo(track);
    }
  }

 private:
  const SearchColumns& columns_;
  std::array<std::optional<text::SearchTerm>, kSearchedFields.size()> terms_;
  std::array<std::optional<ColumnCursor>, kSearchedFields.size()> cursors_;
};

}  // namespace tavrel
