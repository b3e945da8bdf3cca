// What a host sees of a library: everything that the queries answer, read the way a careful host
// reads it, and checked on the way for what must hold whatever the library file is.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/LoadedLibrary.h"

namespace tavrel::test {

// A text and the size that was reported for it; no text when the host's buffer was left alone.
struct SeenText {
  std::int32_t size = 0;
  std::optional<std::string> text;

  friend bool operator==(const SeenText&, const SeenText&) = default;
};

void PrintTo(const SeenText& seen, std::ostream* stream);

struct SeenSong {
  SeenText name, location, artist, album, genre;
  std::int32_t totalTime = 0;
  std::int32_t playCount = 0;
  std::int32_t trackNumber = 0;
  std::int32_t movie = 0;

  friend bool operator==(const SeenSong&, const SeenSong&) = default;
};

struct SeenPlaylist {
  PlaylistRecord* handle = nullptr;
  std::int32_t group = 0;
  std::int32_t index = 0;
  std::int32_t kind = 0;
  SeenText name;
  std::vector<SeenSong> songs;
};

// Asks for the sizes, then for the texts, into buffers of exactly those sizes with guard bytes
// around them.
[[nodiscard]] SeenSong SeeSong(const HostFunctions& library, PlaylistRecord* playlist,
                               std::int32_t index);
[[nodiscard]] std::vector<SeenSong> SeeSongs(const HostFunctions& library,
                                             PlaylistRecord* playlist);
// Every playlist that the library file brought, in the order of groups and positions: the playlist
// "Ringtones" at the end of group 0, which the library adds itself, is left out.
[[nodiscard]] std::vector<SeenPlaylist> SeePlaylists(const HostFunctions& library);

// "GROUP:KIND NAME SONGS" of each playlist.
[[nodiscard]] std::vector<std::string> Summaries(const std::vector<SeenPlaylist>& playlists);
// The names of a playlist's songs; "-" for one without.
[[nodiscard]] std::vector<std::string> SongNames(const HostFunctions& library,
                                                 PlaylistRecord* playlist);
// The playlist of that name; null when there is none.
[[nodiscard]] PlaylistRecord* PlaylistNamed(const HostFunctions& library, const std::string& name);

}  // namespace tavrel::test
