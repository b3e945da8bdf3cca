// The whole library as one SQLite database.
#pragma once

#include <cstdint>
#include <string>

#include "host/library/FileTally.h"
#include "host/library/Session.h"

namespace tavrel::host {

struct DatabaseCounts {
  std::int64_t tracks = 0;
  std::int64_t playlists = 0;
  std::int64_t items = 0;  // songs of all playlists
  FileTally tally = {};    // of the files of the tracks; of none where nobody has looked
};

// Fills the empty file at `path`; name: what messages call it. A failure leaves it anyhow.
DatabaseCounts WriteDatabase(const std::string& path, const std::string& name, Session& session);

// What that would count.
[[nodiscard]] DatabaseCounts CountForDatabase(const Session& session);

}  // namespace tavrel::host
