// What is odd about the library file itself, as far as the library tells: it drops the items of playlists that
// name no track without a word.
#pragma once

#include <functional>
#include <vector>

#include "host/checks/DictionaryChecks.h"
#include "host/library/Session.h"

namespace tavrel::host {

struct FileChecks {
  bool isWhole = true;                // it ends as a property list does
  std::vector<FileFinding> findings;  // those that are some
};

// read: what was seen of the songs' dictionaries; null: they are read for it, and step is called for each song.
// Cost: a walk over each dictionary that was not read, and a look at each item of each playlist.
[[nodiscard]] FileChecks CheckFile(const Session& session, const std::function<void()>& step,
                                   DictionaryChecks* read = nullptr);

}  // namespace tavrel::host
