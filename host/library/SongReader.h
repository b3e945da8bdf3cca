// Songs out of the library, as C++ texts.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "host/library/Library.h"

namespace tavrel::host {

// One song; a text that the song does not have is none. SongReader tells nothing of what has a star.
struct Song {
  std::optional<std::string_view> name;
  std::optional<std::string_view> location;
  std::optional<std::string_view> artist;
  std::optional<std::string_view> albumArtist;  // *
  std::optional<std::string_view> album;
  std::optional<std::string_view> genre;
  std::int32_t totalTime = 0;  // in milliseconds
  std::int32_t playCount = 0;
  std::int32_t trackNumber = 0;
  bool isMovie = false;
  bool isPodcast = false;      // *
  bool isCompilation = false;  // *
};

// Reads songs one after the other into one buffer.
class SongReader {
 public:
  explicit SongReader(const LibraryFunctions& library) : library_(library) {}

  // The texts stay valid until the next call. position: must be one of the playlist's.
  const Song& Read(PlaylistRecord* playlist, std::int32_t position);

 private:
  const LibraryFunctions& library_;
  std::vector<char> buffer_ = std::vector<char>(1024);
  Song song_;
};

// Calls visit(position, song) for each song of the playlist, in its order. The song's texts are valid
// for that call.
template <typename Visit>
void ForEachSong(const LibraryFunctions& library, PlaylistRecord* playlist, Visit visit) {
  SongReader reader(library);
  const std::int32_t count = library.getSongCount(playlist);
  for (std::int32_t position = 0; position < count; ++position) {
    visit(position, reader.Read(playlist, position));
  }
}

}  // namespace tavrel::host
