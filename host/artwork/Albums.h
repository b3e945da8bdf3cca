// The albums of a library, each with its songs and a name for its cover.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/library/SongReader.h"

namespace tavrel::host {

struct Album {
  std::string name;                 // "Artist - Album", safe as a part of a file name
  std::vector<std::int32_t> songs;  // positions among all songs, ascending
};

// A song without an album stands alone. In the order of their first songs.
[[nodiscard]] std::vector<Album> ReadAlbums(const LibraryFunctions& library);

// The positions among all songs of those on the song's album; none for a song without an album.
[[nodiscard]] std::vector<std::int32_t> SongsOnAlbumOf(const Song& song,
                                                       const LibraryFunctions& library);

// "Artist - Album - Name", safe as a part of a file name; what the song lacks is left out.
[[nodiscard]] std::string SongFileName(const Song& song);

}  // namespace tavrel::host
