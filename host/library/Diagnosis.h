// Why the library could not be loaded, and what the user can do about it.
#pragma once

#include <string>

#include "host/output/Failure.h"

namespace tavrel::host {

// Looks at the library file at `path`, as the user named it, after the library has refused it.
// file: what the library has read, which may be a copy.
// Cost: reads the whole file once in the worst case.
[[nodiscard]] Failure Diagnose(const std::string& path, const std::string& file);
[[nodiscard]] inline Failure Diagnose(const std::string& path) {
  return Diagnose(path, path);
}

// The same after the library has read it and has found no track in it.
// Cost: reads no more than the file's ends.
[[nodiscard]] Failure DiagnoseStranger(const std::string& path, const std::string& file);

// There is no library file at `path`, nor elsewhere in the home folder that it lies below.
[[nodiscard]] Failure NoLibraryAt(const std::string& path, const std::string& home);

// There is none in the folder.
[[nodiscard]] Failure NoLibraryIn(const std::string& folder);

}  // namespace tavrel::host
