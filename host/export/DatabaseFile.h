// The file of a library's database.
#pragma once

#include <string>

#include "host/library/Session.h"
#include "host/output/Failure.h"

namespace tavrel::host {

struct DatabaseFileOptions {
  std::string target;   // the file, or a folder for "library.sqlite"
  bool force = false;   // replace one that is there
  bool dryRun = false;  // write nothing
};

// Writes the database beside its place and moves it there, and says what is in it.
[[nodiscard]] ExitCode ExportDatabase(const DatabaseFileOptions& options, Session& session);

}  // namespace tavrel::host
