// A load in its parts, a whole one, and what no load can do without. Each leaves everything behind: it
// is called in a process of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tavrel::bench {

struct Cost {
  double seconds;           // by the wall's clock
  double processorSeconds;  // system calls included
  double pageFaults;
};

[[nodiscard]] inline Cost operator+(const Cost& a, const Cost& b) {
  return {a.seconds + b.seconds, a.processorSeconds + b.processorSeconds,
          a.pageFaults + b.pageFaults};
}

struct Parts {
  Cost read;
  Cost pass;
  Cost tracks;
  Cost playlists;
  std::int32_t trackCount;
  std::size_t elements;

  [[nodiscard]] Cost Tables() const { return tracks + playlists; }
  [[nodiscard]] Cost Sum() const { return read + pass + Tables(); }
};

struct Whole {
  Cost load;
  Cost release;
  std::int32_t trackCount;
};

// What no load can do without: the file's bytes and a record for each element, in fresh memory.
struct Floor {
  Cost read;
  Cost records;

  [[nodiscard]] Cost Sum() const { return read + records; }
};

// Calls the parts one after the other, as a load calls them. All of these throw when they cannot do
// their work.
[[nodiscard]] Parts RunParts(const std::string& file);
[[nodiscard]] Whole RunWhole(const std::string& file);
[[nodiscard]] Floor RunFloor(const std::string& file, std::size_t elements);

}  // namespace tavrel::bench
