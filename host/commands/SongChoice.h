// The one song that the user means.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/library/Session.h"

namespace tavrel::host {

struct ChosenSong {
  PlaylistRecord* playlist;
  std::int32_t position;
};

// names: of a playlist and of a song in it, where the song's position stands for its name, and the first of
// several is taken; or of a song alone, of any in the library, or id:PERSISTENT-ID. Names that differ only in case
// or in how accents are composed count when none is exactly the same. A Failure says that there is none, or
// which ones there are.
[[nodiscard]] ChosenSong ChooseSong(const std::vector<std::string>& names, const Session& session);

}  // namespace tavrel::host
