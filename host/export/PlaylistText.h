// Playlists as files that players read.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavrel::host {

// A song as a playlist names it. Texts may hold anything.
struct PlaylistEntry {
  std::optional<std::string_view> name;
  std::optional<std::string_view> artist;
  std::optional<std::string_view> album;
  std::int64_t milliseconds = 0;      // 0 or less: nobody knows
  std::optional<std::int64_t> track;  // its number on the album
  std::string_view path;              // absolute
  std::string_view written;           // the same, or relative to where the playlist is read from
  std::string_view url;               // of a stream, which has no path; as SafeStreamUrl gives it
};

// The text of one playlist, entry by entry.
class PlaylistText {
 public:
  PlaylistText() = default;
  PlaylistText(const PlaylistText&) = delete;
  PlaylistText& operator=(const PlaylistText&) = delete;
  virtual ~PlaylistText() = default;

  // The entry is borrowed for the call.
  virtual void Add(const PlaylistEntry& entry) = 0;

  // Once, behind the last entry.
  [[nodiscard]] virtual std::string Finish() = 0;
};

}  // namespace tavrel::host
