// The persistent IDs of a library and its songs, after which cache files are named.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/library/Library.h"

namespace tavrel::host {

// 16 digits in upper case; zeros stand for one that is missing.
inline constexpr std::string_view kNoId = "0000000000000000";

struct PersistentIds {
  std::string library = std::string(kNoId);
  std::vector<std::string> tracks;  // in the file's order
};

// One for each song of the library; none when no library file is loaded.
[[nodiscard]] PersistentIds ReadPersistentIds(const LibraryFunctions& library);

// With the letters a to z in upper case.
[[nodiscard]] std::string UpperCase(std::string_view text);

}  // namespace tavrel::host
