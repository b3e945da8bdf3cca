// Small library files for searches, loaded, and what a search of them tells.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "library/State.h"
#include "tavrel/tavrel.h"
#include "tests/support/StandInRunner.h"
#include "tests/support/TemporaryFolder.h"

namespace tavrel::test {

using Text = std::optional<std::string>;

// A track as the file writes it: texts with their escapes.
struct LibraryTrack {
  std::int32_t id;
  Text name;
  Text artist = {};
  Text album = {};
};

struct LibraryPlaylist {
  std::int32_t kind;  // 4 is of the first group, 26 of the second, 0 of the third
  std::vector<std::int32_t> items;
};

[[nodiscard]] std::string TrackXml(const LibraryTrack& track);
// tracks: the contents of the track dictionary, as pairs of a key and a dictionary.
[[nodiscard]] std::string LibraryXml(std::string_view tracks,
                                     const std::vector<LibraryPlaylist>& playlists);

// A loaded library file; unloaded at the end.
class SongLibrary {
 public:
  explicit SongLibrary(std::string_view xml, const std::vector<std::string>& ringtones = {});
  explicit SongLibrary(const std::vector<LibraryTrack>& tracks,
                       const std::vector<LibraryPlaylist>& playlists = {},
                       const std::vector<std::string>& ringtones = {});
  ~SongLibrary() { AgentFinalizer(); }

 private:
  TemporaryFolder home_;
  ScopedVariable variable_;
};

struct Terms {
  Text name = {};
  Text artist = {};
  Text album = {};
};

struct Call {
  PlaylistRecord* playlist;
  std::int32_t index;

  friend bool operator==(const Call&, const Call&) = default;
};

struct Heard {
  std::int32_t count;
  std::vector<Call> calls;
  std::string log;

  friend bool operator==(const Heard&, const Heard&) = default;
};

// What is done in the callback with that number, counted from 0; 0 ends the search.
using InCallback = std::function<std::int32_t(std::size_t)>;

[[nodiscard]] Heard Search(const Terms& terms, const InCallback& inCallback = {});
// The same with the plain search.
[[nodiscard]] Heard SearchInPlainForm(const Terms& terms, const InCallback& inCallback = {});

// The numbers of the calls with a playlist.
[[nodiscard]] std::vector<std::size_t> Placed(const Heard& heard);

}  // namespace tavrel::test
