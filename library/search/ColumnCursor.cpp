#include "library/search/ColumnCursor.h"

#include <algorithm>

#include "library/file/XmlText.h"

namespace tavrel {
namespace {

// The run that holds the byte at `place`, which is not before the first one's text. It is mostly near:
// steps that double find a stretch, in which it is searched for by halves.
std::size_t RunAt(std::span<const TextRun> runs, std::size_t place) noexcept {
  std::size_t step = 1;
  while (step < runs.size() && runs[step].text <= place) step *= 2;
  const auto at = [&](std::size_t index) {
    return runs.begin() + static_cast<std::ptrdiff_t>(std::min(index, runs.size()));
  };
  const auto behind =
      std::upper_bound(at(step / 2), at(step), place,
                       [](std::size_t text, const TextRun& run) { return text < run.text; });
  return static_cast<std::size_t>(behind - runs.begin()) - 1;
}

}  // namespace

ColumnCursor::ColumnCursor(const text::FoldedTexts& texts, const SearchColumn& column,
                           const text::SearchTerm& term) noexcept
    : texts_(texts), runs_(column.runs), faulty_(column.faulty), term_(term) {
  FindMatch();
  NoteEvent();
}

// Decoding once more, with no room for the result, writes the line.
void ColumnCursor::LogFault() const noexcept {
  char none = 0;
  (void)DecodeXmlText(&none, faulty_.front().source, 0);
}

void ColumnCursor::LeaveEvent(std::uint32_t track) noexcept {
  if (!faulty_.empty() && faulty_.front().endTrack <= track) faulty_ = faulty_.subspan(1);
  if (runs_.size() > 1 && runs_[1].firstTrack <= track) {
    runs_ = runs_.subspan(1);
    FindMatch();
  }
  NoteEvent();
}

// Leaves the runs from the first one that matches.
void ColumnCursor::FindMatch() noexcept {
  const std::size_t place = term_.FindIn(texts_, runs_.front().text, runs_.back().text);
  runs_ = place == text::kNotFound ? runs_.last(1) : runs_.subspan(RunAt(runs_, place));
}

void ColumnCursor::NoteEvent() noexcept {
  event_ = runs_.front().firstTrack;
  eventEnd_ = runs_.size() > 1 ? runs_[1].firstTrack : event_;
  if (faulty_.empty()) return;
  event_ = std::min(event_, faulty_.front().firstTrack);
  eventEnd_ = std::min(eventEnd_, faulty_.front().endTrack);
}

}  // namespace tavrel
