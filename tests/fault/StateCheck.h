// Whether the library's state is consistent, however little of a library it holds.
#pragma once

#include "tests/support/Survey.h"

namespace tavrel::test {

// The functions for hosts, linked into this program; inside them operator new can fail.
extern const HostFunctions kLinkedFunctions;

// Everything that a host can see of a library.
struct SeenLibrary {
  std::vector<SeenSong> songs;
  std::vector<SeenPlaylist> playlists;

  friend bool operator==(const SeenLibrary& a, const SeenLibrary& b) {
    return a.songs == b.songs && Summaries(a.playlists) == Summaries(b.playlists);
  }
};
[[nodiscard]] SeenLibrary SeeLibrary();

// Fails the test when a table of the global record contradicts itself or another one.
void ExpectConsistentState();

// Fails the test unless `seen` is what an exhausted memory can leave of `whole`: the songs are the
// first ones, the playlists some of its own, and each text or number is there or is missing.
void ExpectPartOf(const SeenLibrary& seen, const SeenLibrary& whole);

}  // namespace tavrel::test
