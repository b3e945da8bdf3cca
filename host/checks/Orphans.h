// Files in the folders of music that no song names.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "host/checks/NamedFiles.h"
#include "host/files/Folders.h"

namespace tavrel::host {

// The paths of such files, in their byte order. Hidden files do not count, nor what systems and this program
// leave in folders (Thumbs.db, desktop.ini, cover.jpg, cover.png); no folder is entered through a link. A file
// that a song names by another way, through a link say, is no orphan.
//
// musicFolders: where to look. claimed: the files that songs name.
// Cost: each folder is listed once; where there are orphans, one look at each claimed file.
[[nodiscard]] std::vector<std::string> FindOrphans(const std::set<std::string>& musicFolders,
                                                   const NamedFiles& claimed, Folders& folders);

}  // namespace tavrel::host
