// Finding tracks by their Track ID while the playlists are built.
#pragma once

#include <cstdint>

#include "library/State.h"

namespace tavrel {

// The track of that ID, found by binary search over the track table. The search relies on ascending
// Track IDs, the order of the library file; the table is not sorted. Kept: in a file in another
// order, tracks are missed.
[[nodiscard]] TrackRecord* FindTrack(const GlobalState& state, std::int32_t trackId) noexcept;

// Answers as FindTrack() does.
class TrackLookup {
 public:
  explicit TrackLookup(const GlobalState& state) noexcept : state_(state) {}
  TrackLookup(const TrackLookup&) = delete;
  TrackLookup& operator=(const TrackLookup&) = delete;
  ~TrackLookup();

  // Makes each answer cost one look into an array, where that pays: when the IDs ascend strictly,
  // so that the search would find each one, and are not too far apart.
  // Cost: linear in the number of tracks.
  void Prepare() noexcept;

  [[nodiscard]] TrackRecord* Find(std::int32_t trackId) const noexcept {
    if (slots_ == nullptr) return FindTrack(state_, trackId);
    const std::int64_t slot = std::int64_t{trackId} - firstId_;
    if (slot < 0 || slot >= slotCount_ || slots_[slot] == 0) return nullptr;
    return state_.tracks[slots_[slot] - 1];
  }

 private:
  const GlobalState& state_;
  std::int64_t firstId_ = 0;
  std::int64_t slotCount_ = 0;
  std::int32_t* slots_ = nullptr;  // for each ID, its track's position plus 1, or 0; none: search
};

}  // namespace tavrel
