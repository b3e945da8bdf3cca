// What is odd about the library file itself, as far as the library tells: it drops the items of playlists that
// name no track without a word.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/checks/SongChecks.h"
#include "host/library/Session.h"

namespace tavrel::host {

struct FileFinding {
  std::string_view name;  // "idTwice"
  std::string what;       // "songs that have the ID of another one"
  std::int64_t count = 0;
  Positions songs;  // those that are known of it
};

struct FileChecks {
  bool isWhole = true;                // it ends as a property list does
  std::vector<FileFinding> findings;  // those that are some
};

// step: called for each song. Cost: a walk over each dictionary, and a look at each item of each playlist.
[[nodiscard]] FileChecks CheckFile(const Session& session, const std::function<void()>& step);

}  // namespace tavrel::host
