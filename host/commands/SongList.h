// Lists of songs in every format. A song is the same object in all of them.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/arguments/CommandDefinition.h"
#include "host/commands/ListFormat.h"
#include "host/commands/SongColumns.h"
#include "host/library/Session.h"
#include "host/output/Sink.h"

namespace tavrel::host {

struct SongListOptions {
  std::optional<std::string> fields;  // names parted by commas, or "all"; none: the command's own
  std::optional<std::string> sort;
  bool isReversed = false;
  FormatOptions format;
};

// The options that every command has which lists songs.
void AddSongListOptions(CommandDefinition command, SongListOptions& list);

// What is listed: songs of a playlist by their positions.
struct SongList {
  PlaylistRecord* playlist = nullptr;
  std::vector<std::int32_t> positions;
  std::vector<Field> tableFields;  // what a table shows when nothing else is asked for
  bool withPositions = false;      // in a table
  std::map<Field, FindMark> marks;
  // The playlists that hold the song at a position; may be empty.
  std::function<std::vector<std::string>(std::int32_t)> listsOf;
  std::size_t limit = 0;  // of what is printed, once it is sorted; 0: none
};

// Sorts the songs as the options say, and prints them; an empty table prints nothing.
void PrintSongs(SongList& list, const SongListOptions& options, Session& session);

enum class SongFileFormat { Json, Csv };

using OnSong = std::function<void(std::int32_t, const SongRecord&)>;  // a song and its position

// Writes every field of all songs of a playlist, as a list of that format has them. onSong: told of each.
void WriteSongs(PlaylistRecord* playlist, SongFileFormat format, const Session& session,
                Sink& output, OnSong onSong);

// All positions of a playlist's songs.
[[nodiscard]] std::vector<std::int32_t> AllPositions(const LibraryFunctions& library,
                                                     PlaylistRecord* playlist);

}  // namespace tavrel::host
