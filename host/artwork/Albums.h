// The songs of a library, put together to albums.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/SongReader.h"

namespace tavrel::host {

struct Album {
  std::string name;                 // "Artist - Album", safe as a file name
  std::vector<std::int32_t> songs;  // positions among all songs, ascending
};

// Songs belong to one album when they name the same one and share their artist or their folder, so
// that an album of several artists stays together, and so do the discs of one artist. A song
// without an album stands alone. In the order of their first songs.
[[nodiscard]] std::vector<Album> ReadAlbums(const Library& library);

// "Artist - Album - Name", safe as a file name; what the song lacks is left out.
[[nodiscard]] std::string SongFileName(const Song& song);

}  // namespace tavrel::host
