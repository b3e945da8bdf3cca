#include "library/tracks/TrackLookup.h"

#include "library/tracks/TrackTable.h"
#include "system/Memory.h"

namespace tavrel {
namespace {

// An array that is mostly holes costs more than it saves; so does one for a handful of tracks.
constexpr std::int64_t kMostSlotsPerTrack = 8;
constexpr std::int32_t kFewestTracks = 32;

bool Ascends(const GlobalState& state) noexcept {
  for (std::int32_t i = 1; i < state.trackCount; ++i) {
    if (state.tracks[i - 1]->trackId >= state.tracks[i]->trackId) return false;
  }
  return true;
}

}  // namespace

TrackRecord* FindTrack(const GlobalState& state, std::int32_t trackId) noexcept {
  std::int32_t low = 0;
  std::int32_t high = state.trackCount - 1;
  while (low <= high) {
    const std::int32_t middle = low + (high - low) / 2;
    TrackRecord* track = state.tracks[middle];
    if (trackId == track->trackId) return track;
    if (trackId > track->trackId) {
      low = middle + 1;
    } else {
      high = middle - 1;
    }
  }
  return nullptr;
}

void TrackLookup::Prepare() noexcept {
  const GlobalState& state = state_;
  if (state.trackCount < kFewestTracks || !Ascends(state)) return;
  const std::int64_t first = state.tracks[0]->trackId;
  const std::int64_t range = state.tracks[state.trackCount - 1]->trackId - first + 1;
  if (range > kMostSlotsPerTrack * state.trackCount) return;
  slots_ = static_cast<std::int32_t*>(
      system::AllocateZeroed(static_cast<std::size_t>(range) * sizeof(std::int32_t)));
  if (slots_ == nullptr) return;
  firstId_ = first;
  slotCount_ = range;
  for (std::int32_t i = 0; i < state.trackCount; ++i) {
    slots_[state.tracks[i]->trackId - first] = i + 1;
  }
}

TrackLookup::~TrackLookup() {
  system::Release(slots_);
}

}  // namespace tavrel
