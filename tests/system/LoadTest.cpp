// Loading and unloading, seen by a host.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/CapturedStderr.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/Survey.h"
#include "tests/support/TemporaryHome.h"

using namespace tavrel::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Entry = std::int32_t();

const char kNotOpened[] = "Open iTunes Library file error!";

}  // namespace

TEST(LoadWithoutLibrary, LogsOneLineAndEveryQueryAnswersNothing) {
  const TemporaryHome home;
  const CapturedStderr log;
  LoadedLibrary library(home.path());
  EXPECT_THAT(log.Messages(), ElementsAre(kNotOpened));
  EXPECT_FALSE(library.HasDocument());
  for (const std::int32_t group : {0, 1, 2, 3, -1, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(library->getPlaylistCount(group), 0);
    for (const std::int32_t index : {0, 1, -1, INT32_MAX, INT32_MIN}) {
      EXPECT_EQ(library->openPlaylist(group, index), nullptr);
      char buffer[4] = "abc";
      EXPECT_EQ(library->getPlaylistName(group, index, buffer, sizeof buffer), 0);
      EXPECT_STREQ(buffer, "abc");
    }
  }
  EXPECT_EQ(library->openAllSongs(), nullptr);
  std::int32_t index = 77;
  EXPECT_EQ(library.Get<PlaylistRecord* (*)(std::int32_t, std::int32_t*)>("GetPlaylistByTrackId")(
                101, &index),
            nullptr);
  EXPECT_EQ(index, 77);
  EXPECT_EQ(library.Unload(), 0);
  EXPECT_THAT(log.Messages(), ElementsAre(kNotOpened));
}

TEST(LoadWithoutLibrary, LeavesEveryTableEmpty) {
  const TemporaryHome home;
  const CapturedStderr log;
  const LoadedLibrary library(home.path());
  const GlobalState* state = library.Global();
  ASSERT_NE(state, nullptr);
  EXPECT_EQ(state->tracks, nullptr);
  EXPECT_EQ(state->trackCapacity, 0);
  EXPECT_EQ(state->trackCount, 0);
  EXPECT_EQ(state->groups, nullptr);
  EXPECT_EQ(state->groupCapacity, 0);
  EXPECT_EQ(state->groupCount, 0);
  EXPECT_EQ(state->artworkFiles, nullptr);
  EXPECT_EQ(state->artworkFileCapacity, 0);
  EXPECT_EQ(state->artworkFileCount, 0);
  for (const std::uint8_t byte : state->libraryPersistentId) EXPECT_EQ(byte, 0);
  EXPECT_NE(state->pool, nullptr);
}

TEST(LoadWithoutLibrary, BuildersAndDestroyersDoNothing) {
  const TemporaryHome home;
  const CapturedStderr log;
  const LoadedLibrary library(home.path());
  EXPECT_EQ(library.Get<Entry*>("CreateTrackArray")(), 0);
  EXPECT_EQ(library.Get<Entry*>("DestroyTrackArray")(), 0);
  EXPECT_EQ(library.Get<Entry*>("DestroyPlaylistArray")(), 0);
  EXPECT_EQ(library->getPlaylistCount(0), 0);
}

TEST(Load, FillsTheTablesAndLogsNothing) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  const CapturedStderr log;
  LoadedLibrary library(home.path());
  EXPECT_THAT(Summaries(SeePlaylists(library.functions())),
              ElementsAre("0:4 Music 3", "0:2 Movies 1", "0:10 Podcasts 0", "1:26 Genius 0",
                          "2:0 Rock & Roll 3", "2:0 Lost 1"));
  EXPECT_EQ(library.Unload(), 0);
  EXPECT_EQ(log.Text(), "");
}

TEST(Load, WhatTheHostHasDestroyedIsNotReleasedAgain) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  LoadedLibrary library(home.path());
  for (const char* name : {"DestroyArtworkArray", "DestroyRingtoneArray", "DestroyTrackArray",
                           "DestroyPlaylistArray"}) {
    for (int i = 0; i < 2; ++i) EXPECT_EQ(library.Get<Entry*>(name)(), 0) << name;
  }
  EXPECT_EQ(library.Unload(), 0);
}

TEST(Load, NullHandlesAnswerNothingWhateverTheLibrary) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  const LoadedLibrary library(home.path());
  EXPECT_EQ(library->closePlaylist(nullptr), 0);
  EXPECT_EQ(library->getPlaylistKind(nullptr), 0);
  EXPECT_EQ(library->getSongCount(nullptr), 0);
  SongInfo info = {};
  info.nameSize = 5;
  info.reserved = 6;
  EXPECT_EQ(library->getSongInfo(nullptr, 0, &info), 0);
  EXPECT_EQ(library->getSongInfo(nullptr, 0, nullptr), 0);
  EXPECT_EQ(library->getSongInfo(library->openPlaylist(0, 0), 0, nullptr), 0);
  EXPECT_EQ(info.nameSize, 5);
  EXPECT_EQ(info.reserved, 6);
}

TEST(Load, WrappersAndImplementationsAgree) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  const LoadedLibrary library(home.path());
  HostFunctions implementations = {};
  implementations.getPlaylistCount =
      library.Get<decltype(&GetPlaylistCount)>("GetPlaylistCountImp");
  implementations.openPlaylist = library.Get<decltype(&OpenPlaylist)>("OpenPlaylistImp");
  implementations.closePlaylist = library.Get<decltype(&ClosePlaylist)>("ClosePlaylistImp");
  implementations.getPlaylistName = library.Get<decltype(&GetPlaylistName)>("GetPlaylistNameImp");
  implementations.getPlaylistKind = library.Get<decltype(&GetPlaylistKind)>("GetPlaylistKindImp");
  implementations.getSongCount = library.Get<decltype(&GetSongCount)>("GetSongCountImp");
  implementations.getSongInfo = library.Get<decltype(&GetSongInfo)>("GetSongInfoImp");
  EXPECT_EQ(Summaries(SeePlaylists(implementations)), Summaries(SeePlaylists(library.functions())));
  EXPECT_EQ(implementations.getSongInfo(nullptr, 0, nullptr), 0);
  EXPECT_EQ(implementations.getSongInfo(library->openPlaylist(0, 0), 0, nullptr), 0);
  EXPECT_EQ(implementations.closePlaylist(nullptr), 0);
  EXPECT_EQ(implementations.getSongCount(nullptr), 0);
  EXPECT_EQ(implementations.getPlaylistKind(nullptr), 0);
}

TEST(Unload, TakesTheLibraryOutOfTheProcess) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  LoadedLibrary library(home.path());
  EXPECT_TRUE(IsLibraryMapped());
  EXPECT_EQ(library.Unload(), 0);
  EXPECT_FALSE(IsLibraryMapped());
}

TEST(Unload, ASecondFinalizerDoesNothing) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  LoadedLibrary library(home.path());
  Entry* finalize = library.Get<Entry*>("AgentFinalizer");
  EXPECT_EQ(finalize(), 0);
  EXPECT_EQ(finalize(), 0);
  EXPECT_EQ(library.Get<Entry*>("AgentFinalizerImp")(), 0);
  EXPECT_EQ(library.Unload(), 0);
  EXPECT_FALSE(IsLibraryMapped());
}

TEST(Unload, AFinalizerLeavesTheGlobalPointerAsItWas) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  const LoadedLibrary library(home.path());
  const GlobalState* before = library.Global();
  library.Get<Entry*>("AgentFinalizer")();
  EXPECT_EQ(library.Global(), before);
}

TEST(Unload, FollowsWhatTheLoadMadeAndNotTheGlobalPointerThatHostsCanSet) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  GlobalState ofTheHost = {};
  for (GlobalState* set : {static_cast<GlobalState*>(nullptr), &ofTheHost}) {
    LoadedLibrary library(home.path());
    *library.Get<GlobalState**>("g_pGlobal") = set;
    EXPECT_EQ(library.Unload(), 0);
    EXPECT_FALSE(IsLibraryMapped());
  }
}

TEST(Unload, ALibraryCanBeLoadedAgainByTheHost) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  const LoadedLibrary library(home.path());
  const auto before = Summaries(SeePlaylists(library.functions()));
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(library.Get<Entry*>("AgentFinalizer")(), 0);
    EXPECT_EQ(library.Get<Entry*>("AgentInitializer")(), 0);
    EXPECT_EQ(Summaries(SeePlaylists(library.functions())), before);
  }
}

TEST(Unload, WithoutALibraryFileTheInitializerAnswersMinusOne) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  LoadedLibrary library(home.path());
  library.Get<Entry*>("AgentFinalizer")();
  setenv("HOME", (home.path() + "/none").c_str(), 1);
  const CapturedStderr log;
  EXPECT_EQ(library.Get<Entry*>("AgentInitializer")(), -1);
  EXPECT_THAT(log.Messages(), ElementsAre(kNotOpened));
  EXPECT_EQ(library->getPlaylistCount(0), 0);
  EXPECT_THAT(SeePlaylists(library.functions()), IsEmpty());
  EXPECT_EQ(library.Unload(), 0);
}

namespace {

// What a second initializer leaves behind stays allocated on purpose: keep it reachable.
GlobalState* formerState = nullptr;

}  // namespace

TEST(SecondInitializer, MakesAFreshRecordAndLeavesTheFormerOneAlone) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  LoadedLibrary library(home.path());
  formerState = library.Global();
  PlaylistRecord* former = PlaylistNamed(library.functions(), "Rock & Roll");
  const auto formerNames = SongNames(library.functions(), former);

  home.WriteLibrary(LibraryText({Track(5), Playlist(TextPair("Name", "New"), {5})}));
  EXPECT_EQ(library.Get<Entry*>("AgentInitializer")(), 0);
  EXPECT_NE(library.Global(), formerState);
  EXPECT_THAT(Summaries(SeePlaylists(library.functions())), ElementsAre("2:0 New 1"));
  EXPECT_EQ(formerState->trackCount, 5);
  EXPECT_EQ(SongNames(library.functions(), former), formerNames);

  EXPECT_EQ(library.Get<Entry*>("AgentFinalizer")(), 0);
  EXPECT_EQ(SongNames(library.functions(), former), formerNames);
  EXPECT_EQ(library.Unload(), 0);
  EXPECT_EQ(formerState->trackCount, 5);
}
