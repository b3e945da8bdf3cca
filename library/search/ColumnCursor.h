// Walks one column of texts for one term, from event to event: from a track at which there is something
// to tell to the next one. Events are matches, and looks at faulty texts, which are to be logged.
//
//   tracks   0   1   2   3   4   5   6   7
//   runs     [ a     ][ b ][ c      ][ d  ]     neighbours share a text
//   match                   c holds the term
//   faulty   [ a     ]
//   events   0   1   .   .  4   5    .   .      what lies between is passed over unseen
#pragma once

#include <cstdint>
#include <span>

#include "library/search/SearchColumns.h"
#include "text/TextSearch.h"

namespace tavrel {

class ColumnCursor {
 public:
  // Stands before the first track. All is borrowed.
  ColumnCursor(const text::FoldedTexts& texts, const SearchColumn& column,
               const text::SearchTerm& term) noexcept;

  // The first event, from the present track on or before it; the number of tracks when there is none.
  [[nodiscard]] std::uint32_t event() const noexcept { return event_; }

  // Asked for every event of every column: the usual answers are given without a call.

  // Whether the text of `track`, to which the cursor has come, matches; logs its faults.
  [[nodiscard]] bool Test(std::uint32_t track) const noexcept {
    if (!faulty_.empty() && faulty_.front().firstTrack <= track) [[unlikely]] {
      LogFault();
    }
    return runs_.front().firstTrack <= track;
  }

  // Comes to `track`, which is at most one behind the event.
  void MoveTo(std::uint32_t track) noexcept {
    if (track >= eventEnd_) LeaveEvent(track);
  }

 private:
  void LogFault() const noexcept;
  void LeaveEvent(std::uint32_t track) noexcept;
  void FindMatch() noexcept;
  void NoteEvent() noexcept;

  const text::FoldedTexts& texts_;
  std::span<const TextRun> runs_;  // from the matching one on; only the end when none is left
  std::span<const FaultyText> faulty_;
  const text::SearchTerm& term_;
  std::uint32_t event_ = 0;
  std::uint32_t eventEnd_ = 0;  // the first track at which the event may be another one
};

}  // namespace tavrel
