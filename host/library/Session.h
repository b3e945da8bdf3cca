// What a command works with.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/library/Library.h"
#include "host/library/LibraryPlace.h"
#include "host/library/Options.h"
#include "host/output/MessageGuard.h"
#include "host/output/Output.h"
#include "host/output/Terminal.h"

namespace tavrel::host {

class FileTally;
class SongFiles;

// All of it is borrowed from the program's main function.
struct Session {
  const Options& options;
  const LibraryPlace& place;
  const std::string& libraryPath;          // as the user named it
  const std::optional<std::string>& home;  // where the library was told to read; none: the user's
  const Library& library;
  const Terminal& terminal;
  Output& output;
  SongFiles& files;  // the library's file finder
};

// A file's path as the user knows it: what lies in a home folder of links lies beside the library file in
// truth.
[[nodiscard]] std::string UserPath(const Session& session, std::string_view location);

// Says the tally's line on standard error, unless there is none, or nothing is to be said.
void TellWhatWasFound(const FileTally& tally, const Session& session);

}  // namespace tavrel::host
