// Files of a repeated piece, and huge ones. What they cost is counted elsewhere; here they are loaded, or
// refused, without harm, and what comes out is whole.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/hostile/HostileHome.h"
#include "tests/hostile/RepeatedPieces.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/Texts.h"

using namespace tavrel::test;

namespace {

class HostileFamily : public testing::TestWithParam<Family> {};

}  // namespace

// What a careful host asks is checked on the way.
TEST_P(HostileFamily, IsLoadedOrRefusedWithoutHarm) {
  const HostileHome home;
  static_cast<void>(home.Load(GetParam().OfSize(std::size_t{64} << 10)));
}

INSTANTIATE_TEST_SUITE_P(Repeated, HostileFamily, testing::ValuesIn(kFamilies),
                         [](const auto& family) { return std::string(family.param.name); });

TEST(HostileSize, NameOfTwentyMegabytesIsDeliveredWhole) {
  const TemporaryHome home;
  const std::size_t bytes = std::size_t{20} << 20;
  home.WriteLibrary(kNameOfOne + std::string(bytes, 'n') + kNameEnd);
  const LoadedLibrary library(home.path());
  SongInfo info = {};
  const auto size = static_cast<std::int32_t>(bytes + 1);
  EXPECT_EQ(library->getSongInfo(library->openAllSongs(), 0, &info), 96 + size);
  ASSERT_EQ(info.nameSize, size);
  std::string buffer(bytes + 2, '#');
  info.name = buffer.data();
  library->getSongInfo(library->openAllSongs(), 0, &info);
  EXPECT_TRUE(buffer == std::string(bytes, 'n') + '\0' + '#');
}

TEST(HostileSize, MillionUnknownTracksGiveAnEmptyPlaylist) {
  const TemporaryHome home;
  home.WriteLibrary(kOneTrack + "<dict><array>" + Repeated("<d><k/><i>2</i></d>", 1000000) +
                    "</array></dict></array></dict></plist>");
  const LoadedLibrary library(home.path());
  ASSERT_EQ(library->getPlaylistCount(2), 1);
  EXPECT_EQ(library->getSongCount(library->openPlaylist(2, 0)), 0);
}

TEST(HostileSize, PlaylistMayHoldATrackAMillionTimes) {
  const TemporaryHome home;
  home.WriteLibrary(kOneTrack + "<dict><array>" + Repeated("<d><k/><i>1</i></d>", 1000000) +
                    "</array></dict></array></dict></plist>");
  const LoadedLibrary library(home.path());
  PlaylistRecord* playlist = library->openPlaylist(2, 0);
  ASSERT_EQ(library->getSongCount(playlist), 1000000);
  SongInfo info = {};
  EXPECT_EQ(library->getSongInfo(playlist, 999999, &info), 96);
}

TEST(HostileSize, ErrorInATextOfMegabytesIsLoggedOnce) {
  const TemporaryHome home;
  home.WriteLibrary(kNameOfOne + Repeated("&", 1 << 20) + kNameEnd);
  const LoadedLibrary library(home.path());
  SongInfo info = {};
  const CapturedStderr log;
  for (int i = 0; i < 3; ++i) library->getSongInfo(library->openAllSongs(), 0, &info);
  EXPECT_EQ(info.nameSize, (1 << 20) + 1);
  EXPECT_THAT(log.Messages(), testing::SizeIs(1));
}
