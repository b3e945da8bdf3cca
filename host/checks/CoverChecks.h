// Covers that are missing or cannot be read.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "host/artwork/Albums.h"
#include "host/library/Session.h"

namespace tavrel::host {

struct CoverChecks {
  bool hasCache = false;          // whether there is any cache file
  std::vector<Album> without;     // albums none of whose songs has a picture; none without a cache
  std::set<std::string> damaged;  // cache files that hold no whole picture, or cannot be opened
};

// step: called for each song. Cost: reads the cache files of all songs.
[[nodiscard]] CoverChecks CheckCovers(const Session& session, const std::function<void()>& step);

}  // namespace tavrel::host
