// A library file to be loaded, and what a look at its text says about it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tavrel::bench {

struct Input {
  std::string path;
  std::string name;  // without folders
  std::size_t bytes = 0;
  std::uint64_t hash = 0;  // FNV-1a
  std::int64_t elements = 0;
  std::int64_t attributes = 0;
  std::int64_t tracks = 0;
  std::int64_t items = 0;  // of all playlists, hidden ones included
};

// Counts by searching the text, as generate_library writes it, not by parsing. Throws when the file
// cannot be read.
[[nodiscard]] Input LookAt(const std::string& path);

}  // namespace tavrel::bench
