// Where the songs of the page belong: to which album, and where their files are.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/library/AlbumGrouping.h"
#include "host/library/Fields.h"
#include "host/library/FileTally.h"
#include "host/library/Library.h"
#include "host/library/LocationReader.h"
#include "host/page/Columns.h"
#include "host/page/Contents.h"
#include "host/page/SongBlock.h"

namespace tavrel::host {

class SongPlaceMaker {
 public:
  // Looks for the files as the library's finder does. Asks the library itself nothing.
  // withPaths: also the column of where they lie. songs: how many will come. Room is taken for numbers that last as
  // long.
  SongPlaceMaker(const LibraryFunctions& library, bool withPaths, std::size_t songs,
                 NumberRoom& room);

  // What it reads of a song.
  [[nodiscard]] static FieldSet Fields();

  // The next songs.
  void Add(const SongBlock& songs);

  // What became of the files.
  [[nodiscard]] std::vector<PageColumn> TakeColumns();
  // That as figures, and the albums.
  void MoveTo(PageContents& contents);

 private:
  void FindFile(std::optional<std::string_view> location, std::string_view type);
  void MoveAlbumsTo(PageContents& contents) const;

  LocationReader location_;
  PageColumn states_;
  std::optional<PageColumn> paths_;
  FileTally tally_;
  AlbumGrouping grouping_;
  std::vector<std::optional<std::size_t>> parts_;  // of albums, of each song
  std::vector<std::int32_t> plays_;
};

}  // namespace tavrel::host
