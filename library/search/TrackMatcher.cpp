#include "library/search/TrackMatcher.h"

namespace tavrel {

bool TrackMatcher::Prepare(const SongInfo& terms) noexcept {
  for (std::size_t i = 0; i < terms_.size(); ++i) {
    const char* term = terms.*kTrackFields[kSearchedFields[i]].text;
    if (term != nullptr && !terms_[i].emplace(term).IsPrepared()) return false;
  }
  for (std::size_t i = 0; i < terms_.size(); ++i) {
    if (terms_[i]) cursors_[i].emplace(columns_.texts, columns_.columns[i], *terms_[i]);
  }
  return true;
}

}  // namespace tavrel
