// What the program can do: a file for each command, and here what each is told.
//
// A new command is a file with its function, its arguments here, and their options in
// CommandLine.cpp.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/artwork/Export.h"
#include "host/commands/SongList.h"
#include "host/library/Session.h"
#include "host/library/SongMatching.h"
#include "host/output/Failure.h"

namespace tavrel::host {

struct ArtworkArguments {
  std::vector<std::string> names;  // a cache file, or a playlist and a song
  std::optional<std::string> target;
  bool list = false;
  bool all = false;
  ExportOptions exporting;
};

struct PlaylistsArguments {
  bool all = false;  // built-in and empty ones, too
  SongQuery with;    // only those that hold such a song; without words all
};

struct RingtoneArguments {
  std::string file;  // as the user wrote it
  bool force = false;
};

struct SearchArguments {
  SongQuery query;
  std::size_t limit = 0;  // 0: none
  bool countOnly = false;
  bool withLists = false;
  SongListOptions list;
};

struct StatisticsArguments {
  std::string by = "artist";
  std::optional<std::string> top;  // a number, or "all"; none: what suits the list
};

struct SongsArguments {
  std::optional<std::string> playlist;  // none: all songs
  bool all = false;                     // the same, said aloud
  SongListOptions list;
};

// Each prints to the session's output. A result of Failed is one that was said already.
[[nodiscard]] ExitCode ShowOverview(Session& session);  // without a command
[[nodiscard]] ExitCode ShowArtwork(const ArtworkArguments& arguments, Session& session);
[[nodiscard]] ExitCode ListPlaylists(const PlaylistsArguments& arguments, Session& session);
[[nodiscard]] ExitCode ShowStatistics(const StatisticsArguments& arguments, Session& session);
[[nodiscard]] ExitCode ListRingtones(Session& session);
[[nodiscard]] ExitCode AddRingtone(const RingtoneArguments& arguments, Session& session);
[[nodiscard]] ExitCode SearchSongs(const SearchArguments& arguments, Session& session);
[[nodiscard]] ExitCode ListSongs(const SongsArguments& arguments, Session& session);

}  // namespace tavrel::host
