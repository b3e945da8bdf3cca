#include "tests/hostile/HostileHome.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/CapturedStderr.h"
#include "tests/support/PropertySurvey.h"
#include "tests/support/Survey.h"

namespace tavrel::test {

namespace {

// What is asked for is checked on the way. Of a great many only the first and the last.
void SeeEveryProperty(const HostFunctions& library) {
  constexpr std::int32_t kMost = 200;
  static_cast<void>(SeeLibraryProperties(library));
  const PlaylistRecord* all = library.openAllSongs();
  const std::int32_t songs = library.getSongCount(all);
  for (std::int32_t i = 0; i < songs; i = i == kMost ? std::max(songs - 1, i + 1) : i + 1) {
    static_cast<void>(SeeSongProperties(library, all, i));
  }
  for (std::int32_t group = 0; group < 3; ++group) {
    const std::int32_t count = std::min(library.getPlaylistCount(group), kMost);
    for (std::int32_t i = 0; i < count; ++i) {
      static_cast<void>(SeePlaylistProperties(library, library.openPlaylist(group, i)));
    }
  }
}

}  // namespace

Outcome HostileHome::Load(std::string_view text) const {
  home_.WriteLibrary(text);
  return LoadFile();
}

Outcome HostileHome::LoadFile() const {
  Outcome outcome;
  const CapturedStderr log;
  LoadedLibrary library(home_.path());
  outcome.loaded = library.HasDocument();
  outcome.playlists = Summaries(SeePlaylists(library.functions()));
  outcome.songs = SongNames(library.functions(), library->openAllSongs());
  outcome.log = log.Messages();
  SeeEveryProperty(library.functions());
  const std::string written = log.Text();
  EXPECT_EQ(library.Unload(), 0);
  EXPECT_EQ(log.Text(), written);
  return outcome;
}

}  // namespace tavrel::test
