// The ringtone playlist: the files of the media folder's Ringtones folder, as the last playlist of
// the first group. Its songs are records of its own, which stand in no track table.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "library/State.h"
#include "library/playlists/PlaylistTable.h"
#include "library/tracks/TrackTable.h"

namespace tavrel {

// Owns a ringtone's record and its two texts; of the malloc family.
struct ReleaseRingtone {
  void operator()(TrackRecord* ringtone) const noexcept;
};
using RingtoneHolder = std::unique_ptr<TrackRecord, ReleaseRingtone>;

// A zero-filled record; none when memory is exhausted.
[[nodiscard]] RingtoneHolder NewRingtone() noexcept;

// Makes a copy of `text` the owned text `field`; `size` counts its terminator. False, with nothing
// changed, when memory is exhausted or the text is so long that sums of sizes would not fit.
[[nodiscard]] bool StoreText(std::string_view text, char*& field, std::int32_t& size) noexcept;

// Lists the folder in a playlist at the end of the first group, which takes the place of a former one.
void CreateRingtones(LibraryState& state) noexcept;

// Takes the ringtone playlist away and releases it with its songs; no other one when it is not there.
void DestroyRingtones(LibraryState& state) noexcept;

// The ringtone playlist where it belongs, at the end of the first group. None when it could not be
// made or appended, or when the playlist that stands there is another: it is known by its address.
[[nodiscard]] PlaylistRecord* RingtonePlaylist(const LibraryState& state) noexcept;

}  // namespace tavrel
