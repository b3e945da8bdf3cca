// tavrel covers -o DIR: the covers of a whole library as files in a folder, or beside the songs.
#pragma once

#include <cstdint>
#include <string>

#include "host/library/Session.h"
#include "host/output/Failure.h"

namespace tavrel::host {

struct ExportOptions {
  std::string folder;
  bool perSong = false;      // else one cover for each album; equal ones of an album share a file
  bool besideSongs = false;  // as "cover" in the folders of albums, instead of all in one
  bool unclaimed = false;    // also the cache files that belong to no song
  bool force = false;        // replace files that are there
  bool isDryRun = false;     // only say what would be written
  std::int32_t longestSide = 0;  // make larger pictures so small; 0: none
};

// Failed when a cache file is damaged, a file cannot be written, or there is no cover at all. Without
// a library every cache file is one that belongs to no song; no library and no such file is a Failure.
[[nodiscard]] ExitCode ExportArtwork(const ExportOptions& options, Session& session);

}  // namespace tavrel::host
