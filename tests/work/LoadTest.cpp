// What it costs to load hostile files, to ask about them and to unload them grows with their length and
// no faster.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tavrel/tavrel.h"
#include "tests/hostile/RepeatedPieces.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryHome.h"
#include "tests/work/WorkCount.h"

namespace tavrel::test {
namespace {

constexpr std::size_t kSmall = std::size_t{64} << 10;
constexpr std::size_t kGrowth = 8;

std::int32_t GoOn(const char*, const char*, const char*, void*) {
  return 1;
}

// Asks for what costs a host something: every count, every name, the first and the last song of every
// list, every property of those and of the lists.
void AskAll() {
  SongInfo info = {};
  PlaylistRecord* all = OpenAllSongs();
  GetSongInfo(all, 0, &info);
  GetSongInfo(all, GetSongCount(all) - 1, &info);
  GetLibraryProperty("Date", nullptr, 0);
  VisitLibraryProperties(GoOn, nullptr);
  VisitSongProperties(all, 0, GoOn, nullptr);
  GetSongProperty(all, GetSongCount(all) - 1, "Name", nullptr, 0);
  for (std::int32_t group = 0; group < 3; ++group) {
    const std::int32_t count = GetPlaylistCount(group);
    for (std::int32_t i = 0; i < count; ++i) {
      GetPlaylistName(group, i, nullptr, 0);
      PlaylistRecord* playlist = OpenPlaylist(group, i);
      GetSongInfo(playlist, GetSongCount(playlist) - 1, &info);
      VisitPlaylistProperties(playlist, GoOn, nullptr);
    }
  }
  SongInfo terms = {};
  char term[] = "n";
  terms.name = term;
  SearchSong(
      &terms, [](PlaylistRecord*, std::int32_t, void*) { return std::int32_t{1}; }, nullptr);
  FindSongs(
      &terms, [](std::int32_t, void*) { return std::int32_t{1}; }, nullptr);
}

WorkCount WorkOfALoad(const TemporaryHome& home, const std::string& text) {
  home.WriteLibrary(text);
  const CapturedStderr log;
  return WorkOf([] {
    AgentInitializer();
    AskAll();
    AgentFinalizer();
  });
}

class HostileFamily : public testing::TestWithParam<Family> {};

TEST_P(HostileFamily, TakesWorkLinearInItsLength) {
  const TemporaryHome home;
  const ScopedVariable variable("HOME", home.path().c_str());
  const WorkCount small = WorkOfALoad(home, GetParam().OfSize(kSmall));
  const WorkCount large = WorkOfALoad(home, GetParam().OfSize(kGrowth * kSmall));
  ExpectLinear(small, large, kGrowth, kSmall / 8);
}

INSTANTIATE_TEST_SUITE_P(Repeated, HostileFamily, testing::ValuesIn(kFamilies),
                         [](const auto& family) { return std::string(family.param.name); });

}  // namespace
}  // namespace tavrel::test
