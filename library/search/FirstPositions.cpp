#include "library/search/FirstPositions.h"

#include <algorithm>

#include "library/playlists/PlaylistQueries.h"
#include "library/playlists/PlaylistTable.h"
#include "library/ringtones/RingtoneCatalogue.h"
#include "library/tracks/TrackTable.h"

namespace tavrel {
namespace {

// A track's number behind its Track ID, so that sorting brings equal IDs together.
using IdAndTrack = std::uint64_t;

constexpr IdAndTrack Join(std::int32_t trackId, std::size_t track) noexcept {
  return std::uint64_t{static_cast<std::uint32_t>(trackId)} << 32 | track;
}

constexpr std::size_t TrackOf(IdAndTrack pair) noexcept {
  return pair & 0xFFFFFFFFu;
}

constexpr bool HaveSameId(IdAndTrack a, IdAndTrack b) noexcept {
  return a >> 32 == b >> 32;
}

// Puts the positions of all songs of the playlists to the first track of their Track ID.
void FindFirst(const GlobalState& state, std::span<const IdAndTrack> sorted,
               SongPosition* positions) noexcept {
  for (std::int32_t g = 0; g < state.groupCount; ++g) {
    const PlaylistGroup& group = *state.groups[g];
    for (PlaylistRecord* playlist :
         std::span(group.playlists, static_cast<std::size_t>(group.count))) {
      for (std::int32_t i = 0; i < playlist->count; ++i) {
        const std::int32_t trackId = playlist->tracks[i]->trackId;
        const auto found = std::lower_bound(sorted.begin(), sorted.end(), Join(trackId, 0));
        if (found == sorted.end() || !HaveSameId(*found, Join(trackId, 0))) continue;
        SongPosition& position = positions[TrackOf(*found)];
        if (position.playlist == nullptr) position = {playlist, i, g};
      }
    }
  }
}

// The other tracks of the same Track ID stand where the first one does.
void ShareAmongEqualIds(std::span<const IdAndTrack> sorted, SongPosition* positions) noexcept {
  for (std::size_t i = 1; i < sorted.size(); ++i) {
    if (!HaveSameId(sorted[i - 1], sorted[i])) continue;
    positions[TrackOf(sorted[i])] = positions[TrackOf(sorted[i - 1])];
  }
}

// The first song with the Track ID 0 in the ringtone playlist, the last of the first group.
SongPosition FirstRingtone(const LibraryState& state) noexcept {
  PlaylistRecord* ringtones = RingtonePlaylist(state);
  for (std::int32_t i = 0; ringtones != nullptr && i < ringtones->count; ++i) {
    if (ringtones->tracks[i]->trackId == 0) return {ringtones, i, 0};
  }
  return {};
}

}  // namespace

bool FirstPositions::IsCurrent() const noexcept {
  return positions_ != nullptr && changes_ == playlistChanges;
}

bool FirstPositions::Renew(const LibraryState& state,
                           std::span<const std::int32_t> trackIds) noexcept {
  Release();
  block_ = system::AllocateBlock(trackIds.size() * sizeof(SongPosition) + 1);
  system::ZeroedBlock pairs = system::AllocateBlock(trackIds.size() * sizeof(IdAndTrack) + 1);
  if (block_.address == nullptr || pairs.address == nullptr) {
    Release();
    system::ReleaseBlock(pairs);
    return false;
  }
  positions_ = reinterpret_cast<SongPosition*>(block_.address);
  changes_ = playlistChanges;

  const std::span sorted(reinterpret_cast<IdAndTrack*>(pairs.address), trackIds.size());
  for (std::size_t i = 0; i < sorted.size(); ++i) sorted[i] = Join(trackIds[i], i);
  if (!std::is_sorted(sorted.begin(), sorted.end())) std::sort(sorted.begin(), sorted.end());
  FindFirst(state, sorted, positions_);
  ShareAmongEqualIds(sorted, positions_);
  system::ReleaseBlock(pairs);
  return true;
}

SongPosition FirstPositions::Find(const LibraryState& state, std::span<const std::int32_t> trackIds,
                                  std::size_t track) noexcept {
  if (!IsCurrent() && !Renew(state, trackIds)) {
    SongPosition scanned = {};
    scanned.playlist = PlaylistOfTrack(&state, trackIds[track], &scanned.index);
    return scanned;
  }
  const SongPosition& known = positions_[track];
  const bool isInFirstGroup = known.playlist != nullptr && known.group == 0;
  if (trackIds[track] != 0 || isInFirstGroup) return known;
  // Ringtones have the Track ID 0, and one may have joined its playlist since, before all other groups.
  const SongPosition ringtone = FirstRingtone(state);
  return ringtone.playlist != nullptr ? ringtone : known;
}

void FirstPositions::Release() noexcept {
  system::ReleaseBlock(block_);
  positions_ = nullptr;
}

}  // namespace tavrel
