// Which files are to be copied where, before any is.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/copying/NamePattern.h"
#include "host/library/FileTally.h"
#include "host/library/Library.h"
#include "host/library/Playlists.h"

namespace tavrel::host {

struct FileToCopy {
  std::string source;
  std::string target;  // relative to the folder that takes the copies; any file system takes it
};

struct ListToCopy {
  const Playlist* playlist;
  std::string target;  // of the playlist's file, likewise
  std::vector<std::optional<std::size_t>>
      files;  // of each song, by its position; none: it has none here
};

struct SongWithoutFile {
  std::string name;    // "Artist - Name"
  std::string place;   // where its file should be, as far as anybody knows
  std::string status;  // as docs/fields.md has it
};

struct CopyPlan {
  std::vector<FileToCopy> files;  // each once, in the order of the first list that has it
  std::vector<ListToCopy> lists;
  std::vector<SongWithoutFile> withoutFile;  // each once
  FileTally tally;                           // of all these
};

// lists: borrowed; one that comes twice counts once.
// Cost: one walk over the properties of each song of the lists, and what finding their files takes.
[[nodiscard]] CopyPlan PlanCopies(const LibraryFunctions& library,
                                  const std::vector<const Playlist*>& lists,
                                  const NamePattern& pattern);

}  // namespace tavrel::host
