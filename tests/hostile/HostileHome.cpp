#include "tests/hostile/HostileHome.h"

#include <gtest/gtest.h>

#include "tests/support/CapturedStderr.h"
#include "tests/support/Survey.h"

namespace tavrel::test {

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
  EXPECT_EQ(library.Unload(), 0);
  outcome.log = log.Messages();
  return outcome;
}

}  // namespace tavrel::test
