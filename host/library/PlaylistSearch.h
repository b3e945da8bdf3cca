// Finding the playlist that the user means.
#pragma once

#include <string>
#include <vector>

#include "host/library/Options.h"
#include "host/library/Playlists.h"

namespace tavrel::host {

// The playlist that `wanted` names: id:PERSISTENT-ID, GROUP:POSITION, else a name, else a name behind those
// of the folders around it ("Composers/Bach"), else either of them that differs only in case or in how its
// accents are composed. When there is none, or several, a Failure says so, and which ones come near.
// options: those that were given, which the commands that it names repeat.
[[nodiscard]] const Playlist& FindPlaylist(const std::vector<Playlist>& playlists,
                                           const std::string& wanted, const Options& options = {});

}  // namespace tavrel::host
