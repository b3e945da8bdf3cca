// Loading, asking and unloading while memory runs out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <cerrno>

#include "agent/Exports.h"
#include "tests/fault/FailingNew.h"
#include "tests/fault/FaultPlan.h"
#include "tests/fault/StateCheck.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/TemporaryHome.h"

using namespace tavrel::test;
namespace faults = tavrel::system::faults;

namespace {

// More of everything than one block of a table or of the parser holds.
std::string LargerLibraryText() {
  std::string tracks;
  std::string items;
  for (int id = 1; id <= 150; ++id) {
    tracks +=
        Track(id, TextPair("Name", std::string("A name that no string holds in itself &#38; ")
                                       .append(std::to_string(id))) +
                      TextPair("Location", "file:///a/path/of/some/length/to%20allocate.mp3?x"));
    items += PlaylistItem(id);
  }
  std::string playlists;
  for (int i = 0; i < 40; ++i) {
    playlists += Playlist(TextPair("Name", "p") + IntegerPair("Distinguished Kind", 4), {i, 2 * i});
  }
  return LibraryText(
      {tracks, playlists + "<dict><key>Items</key><array>" + items + "</array></dict>"});
}

std::int32_t Load() {
  return Inside([] { return AgentInitializer(); });
}

void Unload() {
  EXPECT_EQ(Inside([] { return AgentFinalizer(); }), 0);
}

class LoadFaultsOn : public testing::TestWithParam<std::string (*)()> {
 protected:
  LoadFaultsOn() {
    home_.WriteLibrary(GetParam()());
    setenv("HOME", home_.path().c_str(), 1);
    EXPECT_EQ(Load(), 0);
    whole_ = SeeLibrary();
    Unload();
  }

  const TemporaryHome home_;
  const CapturedStderr log_;
  SeenLibrary whole_;
};

}  // namespace

TEST_P(LoadFaultsOn, LeaveASmallerLibraryThatCanBeAskedAndUnloaded) {
  WithEachAllocationFailing(20, [this] {
    const std::int32_t result = Load();
    EXPECT_TRUE(result == 0 || result == -1);
    ExpectConsistentState();
    ExpectPartOf(SeeLibrary(), whole_);
    ExpectConsistentState();
    Unload();
  });
}

TEST_P(LoadFaultsOn, DoNotHinderTheNextLoad) {
  WithEachAllocationFailing(20, [this] {
    Load();
    Unload();
    faults::Stop();
    EXPECT_EQ(Load(), 0);
    EXPECT_EQ(SeeLibrary(), whole_);
    Unload();
  });
}

TEST_P(LoadFaultsOn, OfAnsweringLoseTextsAndNothingElse) {
  const auto load = [] { EXPECT_EQ(Load(), 0); };
  WithEachAllocationFailing(1, load, [this] {
    const SeenLibrary seen = SeeLibrary();
    faults::Stop();
    ExpectConsistentState();
    ExpectPartOf(seen, whole_);
    EXPECT_EQ(Summaries(seen.playlists), Summaries(whole_.playlists));
    Unload();
  });
}

TEST_P(LoadFaultsOn, OfUnloadingGiveEverythingBack) {
  const auto load = [] { EXPECT_EQ(Load(), 0); };
  WithEachAllocationFailing(5, load, [] { Unload(); });
}

INSTANTIATE_TEST_SUITE_P(Of, LoadFaultsOn, testing::Values(&SmallLibraryText, &LargerLibraryText),
                         [](const auto& parameter) {
                           return parameter.index == 0 ? "ASmallLibrary" : "ALargerLibrary";
                         });

namespace {

// So large that its buffer and its records are mapped from the system.
class HugeLibraryFaults : public testing::Test {
 protected:
  static constexpr std::int32_t kSongs = 12000;

  HugeLibraryFaults() {
    std::string tracks;
    for (int id = 1; id <= kSongs; ++id) tracks += Track(id, IntegerPair("Total Time", 1));
    home_.WriteLibrary(LibraryText({tracks, Playlist(TextPair("Name", "p"), {1, kSongs})}));
    setenv("HOME", home_.path().c_str(), 1);
  }

  void LoadAndUnload() {
    Load();
    ExpectConsistentState();
    most_ = std::max(most_, kLinkedFunctions.getSongCount(kLinkedFunctions.openAllSongs()));
    Unload();
  }

  const TemporaryHome home_;
  const CapturedStderr log_;
  std::int32_t most_ = 0;
};

}  // namespace

TEST_F(HugeLibraryFaults, LeaveASmallerLibraryThatCanBeUnloaded) {
  WithEachAllocationFailing(20, [this] { LoadAndUnload(); });
  EXPECT_EQ(most_, kSongs);
}

TEST_F(HugeLibraryFaults, OfMappingsLeaveASmallerLibraryThatCanBeUnloaded) {
  std::int64_t metCalls = 1;
  for (std::int64_t n = 0; metCalls > 0; ++n) {
    const HeldMemory before = Held();
    BeginFaults({CallKind::Memory, n, true, ENOMEM});
    LoadAndUnload();
    EndFaults();
    metCalls = FaultsMet();
    EXPECT_EQ(Held(), before) << n;
  }
  EXPECT_EQ(most_, kSongs);
}

TEST(LoadFaults, OfTheGlobalRecordLeaveNothing) {
  const TemporaryHome home;
  setenv("HOME", home.path().c_str(), 1);
  faults::FailAfter(0, false);
  EXPECT_EQ(Load(), -1);
  EXPECT_EQ(g_pGlobal, nullptr);
  EXPECT_EQ(Inside([] { return GetPlaylistCount(0); }), 0);
  EXPECT_EQ(Inside([] { return OpenAllSongs(); }), nullptr);
  Unload();
  faults::Stop();
}

TEST(LoadFaults, OfTheLibraryFileLogThatItWasNotOpened) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  setenv("HOME", home.path().c_str(), 1);
  const CapturedStderr log;
  faults::FailAfter(1, false);  // everything but the global record
  EXPECT_EQ(Load(), -1);
  faults::Stop();
  EXPECT_THAT(log.Messages(), testing::ElementsAre("Open iTunes Library file error!"));
  EXPECT_EQ(g_pGlobal->document, nullptr);
  Unload();
}
