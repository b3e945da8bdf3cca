// A load in its parts, a whole one, and what no load can do without. Each leaves everything behind: it
// is called in a process of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tavrel::bench {

// Times are in seconds.
struct Parts {
  double read;
  double pass;
  double tracks;
  double playlists;
  std::int32_t trackCount;
  std::size_t elements;

  [[nodiscard]] double Tables() const { return tracks + playlists; }
  [[nodiscard]] double Sum() const { return read + pass + Tables(); }
};

struct Whole {
  double load;
  double release;
  std::int32_t trackCount;
};

// What no load can do without: the file's bytes and a record for each element, in fresh memory.
struct Floor {
  double read;
  double records;

  [[nodiscard]] double Sum() const { return read + records; }
};

// Calls the parts one after the other, as a load calls them. All of these throw when they cannot do
// their work.
[[nodiscard]] Parts RunParts(const std::string& file);
[[nodiscard]] Whole RunWhole(const std::string& file);
[[nodiscard]] Floor RunFloor(const std::string& file, std::size_t elements);

}  // namespace tavrel::bench
