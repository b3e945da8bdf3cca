// The folders of albums: where players look for a cover.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/artwork/Albums.h"
#include "host/library/FileTally.h"
#include "host/library/Library.h"

namespace tavrel::host {

struct CoverFolders {
  std::vector<std::vector<std::string>>
      ofAlbum;                 // the folders that hold its songs and no others, of each
  std::int64_t ofSeveral = 0;  // folders that hold songs of several albums
  FileTally tally;             // of the songs' files
};

// albums: all of the library's. Only folders of files that were found.
// Cost: what finding the files takes.
[[nodiscard]] CoverFolders FindCoverFolders(const LibraryFunctions& library,
                                            const std::vector<Album>& albums);

}  // namespace tavrel::host
