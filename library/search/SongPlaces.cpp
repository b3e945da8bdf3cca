#include "library/search/SongPlaces.h"

#include <algorithm>

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

// Puts the places of all songs of the playlists to the first track of their Track ID.
void FindPlaces(std::span<const IdAndTrack> sorted, SongPlace* places) noexcept {
  for (std::int32_t g = 0; g < g_pGlobal->groupCount; ++g) {
    const PlaylistGroup& group = *g_pGlobal->groups[g];
    for (PlaylistRecord* playlist :
         std::span(group.playlists, static_cast<std::size_t>(group.count))) {
      for (std::int32_t i = 0; i < playlist->count; ++i) {
        const std::int32_t trackId = playlist->tracks[i]->trackId;
        const auto found = std::lower_bound(sorted.begin(), sorted.end(), Join(trackId, 0));
        if (found == sorted.end() || !HaveSameId(*found, Join(trackId, 0))) continue;
        SongPlace& place = places[TrackOf(*found)];
        if (place.playlist == nullptr) place = {playlist, i, g};
      }
    }
  }
}

}  // namespace

bool SongPlaces::Renew(std::span<const std::int32_t> trackIds) noexcept {
  Release();
  block_ = system::AllocateBlock(trackIds.size() * sizeof(SongPlace) + 1);
  system::ZeroedBlock pairs = system::AllocateBlock(trackIds.size() * sizeof(IdAndTrack) + 1);
  if (block_.address == nullptr || pairs.address == nullptr) {
    Release();
    system::ReleaseBlock(pairs);
    return false;
  }
  places_ = reinterpret_cast<SongPlace*>(block_.address);
  changes_ = playlistChanges;

  const std::span sorted(reinterpret_cast<IdAndTrack*>(pairs.address), trackIds.size());
  for (std::size_t i = 0; i < sorted.size(); ++i) sorted[i] = Join(trackIds[i], i);
  if (!std::is_sorted(sorted.begin(), sorted.end())) std::sort(sorted.begin(), sorted.end());
  FindPlaces(sorted, places_);
  for (std::size_t i = 1; i < sorted.size(); ++i) {
    if (!HaveSameId(sorted[i - 1], sorted[i])) continue;
    places_[TrackOf(sorted[i])] = places_[TrackOf(sorted[i - 1])];
  }
  system::ReleaseBlock(pairs);
  return true;
}

// Ringtones have the Track ID 0, and one may have joined its playlist, the last of the first group,
// since the places were found.
SongPlace SongPlaces::Find(std::span<const std::int32_t> trackIds, std::size_t track) noexcept {
  SongPlace place = {};
  const bool isCurrent = places_ != nullptr && changes_ == playlistChanges;
  if (!isCurrent && !Renew(trackIds)) {
    place.playlist = GetPlaylistByTrackId(trackIds[track], &place.position);
    return place;
  }
  place = places_[track];
  if (trackIds[track] != 0 || (place.playlist != nullptr && place.group == 0)) return place;
  PlaylistRecord* ringtones = RingtonePlaylist();
  for (std::int32_t i = 0; ringtones != nullptr && i < ringtones->count; ++i) {
    if (ringtones->tracks[i]->trackId == 0) return {ringtones, i, 0};
  }
  return place;
}

void SongPlaces::Release() noexcept {
  system::ReleaseBlock(block_);
  places_ = nullptr;
}

}  // namespace tavrel
