// Library files in the folders that iTunes and Music keep them in.
#pragma once

#include <string>
#include <vector>

namespace tavrel::host {

// The library files in the folder, be it iTunes' own, the folder "Music" or a home folder, the newest
// first. Files under several names are named once.
[[nodiscard]] std::vector<std::string> FindLibraryFiles(const std::string& folder);

// What there is, where FindLibraryFiles looks, that may become a library file or be one, and what to do
// with it: lines, each behind a line end and two blanks; empty when there is nothing.
// Cost: each of the folders is read once.
[[nodiscard]] std::string DescribeOtherFiles(const std::string& folder);

// What a folder holds, in one such line.
[[nodiscard]] std::string DescribeEntries(const std::string& folder);

// Folders near this one, which has no library file, that have one: above it, and below it as far as a look into a
// few hundred folders goes. Not more than a few.
[[nodiscard]] std::vector<std::string> NearLibraries(const std::string& folder);

// The files beside the missing `path` with names near its own, as paths that begin as `path` does.
[[nodiscard]] std::vector<std::string> NearFiles(const std::string& path);

}  // namespace tavrel::host
