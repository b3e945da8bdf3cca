// What the page tells of a library: its songs by columns, its albums and its playlists.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/Fields.h"
#include "host/library/FileTally.h"
#include "host/page/ColumnMaker.h"
#include "host/page/NumberRoom.h"

namespace tavrel::host {

struct PageAlbum {
  std::string title;
  std::string artist;
  std::int64_t songs = 0;
  std::int64_t plays = 0;
  std::vector<std::int32_t> positions = {};  // of its songs
};

struct PagePlaylist {
  std::string name;
  std::string id;
  std::string_view type;
  std::size_t depth;
  std::vector<std::int64_t> songs;  // positions among all songs
};

struct PageContents {
  NumberRoom room = {};  // of the columns
  std::size_t songs = 0;
  std::int64_t time = 0;  // in milliseconds
  std::vector<PageColumn> columns = {};
  std::vector<PageAlbum> albums = {};      // in the order of their first songs
  std::vector<std::int64_t> albumOf = {};  // for each song the number of its album from 1; 0: none
  PackedNumbers packedAlbums = {};         // those numbers
  std::vector<PagePlaylist> playlists = {};
  FileTally tally = {};  // of the songs' files

  [[nodiscard]] const PageColumn& Of(Field field) const;
};

}  // namespace tavrel::host
