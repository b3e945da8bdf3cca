// What one reading of all songs shows: which files are here, and which songs are there twice.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "host/checks/DictionaryChecks.h"
#include "host/checks/DuplicateSearch.h"
#include "host/checks/NamedFiles.h"
#include "host/library/FileTally.h"
#include "host/library/Library.h"

namespace tavrel::host {

struct SongChecks {
  FileTally tally;
  Positions missing;
  Positions respelled;
  std::vector<Duplicates> duplicates;  // in the order of their first songs

  NamedFiles files;
  std::set<std::string> musicFolders;  // in which some are
};

// step: called for each song. dictionaries: sees what is read; null: nobody does.
// Cost: one reading of each song and a look for its file.
[[nodiscard]] SongChecks CheckSongs(const LibraryFunctions& library,
                                    const std::function<void()>& step,
                                    DictionaryChecks* dictionaries = nullptr);

}  // namespace tavrel::host
