// Songs for other programs, a row each: as JSON, or parted by commas or tabs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/commands/ListFormat.h"
#include "host/commands/SongColumns.h"
#include "host/library/Session.h"
#include "host/output/Sink.h"

namespace tavrel::host {

// One format. Which keys a file has beside the fields is known only when every song has been read, but they come
// behind the fields, in the order in which songs have them: so a row begins as soon as its song is read, and
// what it lacks of the keys that came later is written behind it.
class SongRows {
 public:
  SongRows() = default;
  SongRows(const SongRows&) = delete;
  SongRows& operator=(const SongRows&) = delete;
  virtual ~SongRows() = default;

  // The beginning of the song's row: the fields, and the keys that are known so far. Valid until the next call.
  [[nodiscard]] virtual std::string_view Begun(const SongRecord& song) = 0;

  // What stands before all rows, once all keys are known.
  virtual void WriteHead() = 0;
  // A row that began when the first `keys` keys were known; position: of its song.
  virtual void Write(std::string_view begun, std::size_t keys, std::int32_t position) = 0;
  virtual void WriteEnd() = 0;
};

// Gives the playlists that hold the song at a position.
using ListsOfSong = std::function<std::vector<std::string>(std::int32_t)>;

// "Encores, On the Air"
[[nodiscard]] std::string JoinedNames(const std::vector<std::string>& names);

// lists: may be empty. format: not a table. All that is not copied is borrowed.
[[nodiscard]] std::unique_ptr<SongRows> MakeSongRows(const SongColumns& columns, ListsOfSong lists,
                                                     ListFormat format, bool forSpreadsheet,
                                                     const Session& session, Sink& output);

inline constexpr std::size_t kMostHeldRows = std::size_t{1} << 26;  // in bytes

// Writes the songs at these positions of the playlist. columns: those that `rows` has; receives the other keys
// where they are asked for. mostHeld: bytes of rows that may wait.
// Cost: one reading of each song, and none of them is held. Where the other keys are asked for, rows wait until
// all songs are read, as far as they may; songs behind those are read twice. So is every song where they are
// not all that the playlist has, in its order.
void WriteSongRows(const LibraryFunctions& library, PlaylistRecord* playlist,
                   const std::vector<std::int32_t>& positions, SongColumns& columns, SongRows& rows,
                   std::size_t mostHeld = kMostHeldRows);

}  // namespace tavrel::host
