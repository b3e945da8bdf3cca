// The ringtone playlist as it is built at load and taken away at unload.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "agent/Exports.h"
#include "agent/Lifecycle.h"
#include "library/ringtones/RingtoneCatalogue.h"
#include "system/Memory.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/RingtoneScene.h"

namespace tavrel {
namespace {

using test::CapturedStderr;
using test::LastPlaylist;
using test::Listed;
using test::ListedNames;
using test::Ringtone;
using test::RingtoneScene;
using testing::ElementsAre;
using testing::IsEmpty;

// The small library's own playlists of the first group.
constexpr std::int32_t kOwnPlaylists = 3;

class RingtoneCatalogue : public testing::Test {
 protected:
  void Load() {
    scene.Load();
    playlist = LastPlaylist();
    ASSERT_NE(playlist, nullptr);
    ASSERT_EQ(GetPlaylistKind(playlist), 55);
  }

  RingtoneScene scene;
  PlaylistRecord* playlist = nullptr;
};

// ---- Names --------------------------------------------------------------------------------------

TEST_F(RingtoneCatalogue, ANameEndsAtTheFileNamesFirstDot) {
  scene.Put("My.Tone.m4r");
  Load();
  EXPECT_THAT(Listed(playlist), ElementsAre(Ringtone{"My", scene.PathOf("My.Tone.m4r")}));
}

TEST_F(RingtoneCatalogue, ANameWithoutADotIsTheWholeFileName) {
  scene.Put("Bell");
  Load();
  EXPECT_THAT(Listed(playlist), ElementsAre(Ringtone{"Bell", scene.PathOf("Bell")}));
}

TEST_F(RingtoneCatalogue, AHiddenFileIsListedWithAnEmptyName) {
  scene.Put(".hidden.m4r");
  Load();
  EXPECT_THAT(Listed(playlist), ElementsAre(Ringtone{"", scene.PathOf(".hidden.m4r")}));
  EXPECT_EQ(playlist->tracks[0]->info.nameSize, 1);
}

TEST_F(RingtoneCatalogue, OnlyTheExactNameDsStoreIsLeftOut) {
  for (const char* name : {".DS_Store", ".DS_Store2", ".ds_store", "x.DS_Store"}) scene.Put(name);
  Load();
  EXPECT_THAT(Listed(playlist), ElementsAre(Ringtone{"", scene.PathOf(".DS_Store2")},
                                            Ringtone{"", scene.PathOf(".ds_store")},
                                            Ringtone{"x", scene.PathOf("x.DS_Store")}));
}

TEST_F(RingtoneCatalogue, ATextFileIsListedLikeARingtone) {
  scene.Put("notes.txt");
  Load();
  EXPECT_THAT(ListedNames(playlist), ElementsAre("notes"));
}

TEST_F(RingtoneCatalogue, NamesOfAnyBytesComeBackByteForByte) {
  const char* names[] = {"Fu\u0308r Elise.m4r", "F\u00fcr Elise.m4r", "\u8352\u57ce.m4r",
                         "not \xFF\xFE text.m4r", "line\nfeed & \"quote\".m4r"};
  for (const char* name : names) scene.Put(name);
  Load();
  EXPECT_THAT(ListedNames(playlist),
              ElementsAre("Fu\u0308r Elise", "F\u00fcr Elise", "line\nfeed & \"quote\"",
                          "not \xFF\xFE text", "\u8352\u57ce"));
}

TEST_F(RingtoneCatalogue, FilesStandInTheByteOrderOfTheirNames) {
  for (const char* name : {"b", "a.b", "a", "Z", "\u00e9", "aa", "A"}) scene.Put(name);
  Load();
  EXPECT_THAT(ListedNames(playlist), ElementsAre("A", "Z", "a", "a", "aa", "b", "\u00e9"));
}

// ---- What counts as a file ----------------------------------------------------------------------

TEST_F(RingtoneCatalogue, FoldersAreNeitherListedNorEntered) {
  scene.Put("Folder.m4r/inside.m4r");
  scene.Put("Tone.m4r");
  Load();
  EXPECT_THAT(ListedNames(playlist), ElementsAre("Tone"));
}

TEST_F(RingtoneCatalogue, ALinkCountsAsWhatItLeadsTo) {
  scene.MakeFolder();
  scene.home().Write("elsewhere/tone", "");
  const auto link = [this](const char* to, const char* name) {
    EXPECT_EQ(symlink(to, scene.PathOf(name).c_str()), 0);
  };
  link(scene.home().PathOf("elsewhere/tone").c_str(), "to-file");
  link(scene.home().PathOf("elsewhere").c_str(), "to-folder");
  link("nowhere", "broken");
  link("loop", "loop");
  Load();
  EXPECT_THAT(Listed(playlist), ElementsAre(Ringtone{"to-file", scene.PathOf("to-file")}));
}

TEST_F(RingtoneCatalogue, WhatIsNoFolderIsListedWithoutBeingOpened) {
  scene.MakeFolder();
  ASSERT_EQ(mkfifo(scene.PathOf("fifo").c_str(), 0600), 0);
  Load();
  EXPECT_THAT(ListedNames(playlist), ElementsAre("fifo"));
}

TEST_F(RingtoneCatalogue, TheFolderMayBeALink) {
  scene.home().Write("elsewhere/Tone.m4r", "");
  std::filesystem::create_directories(scene.home().PathOf("Music/iTunes/iTunes Media"));
  ASSERT_EQ(symlink(scene.home().PathOf("elsewhere").c_str(),
                    scene.home().PathOf("Music/iTunes/iTunes Media/Ringtones").c_str()),
            0);
  Load();
  EXPECT_THAT(Listed(playlist), ElementsAre(Ringtone{"Tone", scene.PathOf("Tone.m4r")}));
}

// ---- The playlist -------------------------------------------------------------------------------

TEST_F(RingtoneCatalogue, ThePlaylistStandsThereWithoutTheFolder) {
  Load();
  EXPECT_EQ(GetPlaylistCount(0), kOwnPlaylists + 1);
  EXPECT_EQ(GetSongCount(playlist), 0);
  EXPECT_EQ(playlist->tracks, nullptr);
  EXPECT_EQ(playlist->capacity, 0);
}

TEST_F(RingtoneCatalogue, ThePlaylistStandsThereForAnEmptyFolderAndForAFileInItsPlace) {
  scene.MakeFolder();
  Load();
  EXPECT_EQ(GetSongCount(playlist), 0);
  scene.Unload();
  std::filesystem::remove(scene.PathOf(""));
  scene.home().Write("Music/iTunes/iTunes Media/Ringtones", "a file");
  Load();
  EXPECT_EQ(GetSongCount(playlist), 0);
}

TEST_F(RingtoneCatalogue, ThePlaylistIsTheLastOfTheFirstGroup) {
  Load();
  char name[11] = "##########";
  EXPECT_EQ(GetPlaylistName(0, kOwnPlaylists, name, 10), 10);
  EXPECT_STREQ(name, "Ringtones");
  EXPECT_EQ(GetPlaylistName(0, kOwnPlaylists, nullptr, 0), 10);
  EXPECT_EQ(playlist->nameSize, 10);
  EXPECT_EQ(GetPlaylistCount(1), 1);
}

TEST_F(RingtoneCatalogue, TheGroupGrowsForThePlaylistByThirtyTwo) {
  std::string playlists;
  for (int i = 0; i < 32; ++i)
    playlists += test::Playlist(test::IntegerPair("Distinguished Kind", 4));
  scene.WriteLibrary(test::LibraryText({"", playlists}));
  Load();
  EXPECT_EQ(GetPlaylistCount(0), 33);
  EXPECT_EQ(g_pGlobal->groups[0]->capacity, 64);
}

TEST_F(RingtoneCatalogue, ThePlaylistGrowsByThirtyTwo) {
  for (int i = 0; i < 65; ++i) scene.Put(std::to_string(100 + i) + ".m4r");
  Load();
  EXPECT_EQ(playlist->count, 65);
  EXPECT_EQ(playlist->capacity, 96);
  EXPECT_EQ(ListedNames(playlist).back(), "164");
}

TEST_F(RingtoneCatalogue, TheFolderIsReadOnceOnly) {
  scene.Put("a");
  Load();
  scene.Put("b");
  EXPECT_THAT(ListedNames(playlist), ElementsAre("a"));
}

TEST_F(RingtoneCatalogue, TheHomeFolderIsThatOfTheLoad) {
  scene.Put("a");
  const test::ScopedVariable home("HOME", (scene.home().path() + "/").c_str());
  Load();
  EXPECT_THAT(Listed(playlist), ElementsAre(Ringtone{"a", scene.PathOf("a")}));
}

// ---- The records --------------------------------------------------------------------------------

TEST_F(RingtoneCatalogue, ARecordHasANameAndALocationAndNothingElse) {
  scene.Put("Tone.m4r");
  Load();
  const TrackRecord& record = *playlist->tracks[0];
  EXPECT_TRUE(test::HasOnlyNameAndLocation(record));
  EXPECT_EQ(record.info.nameSize, 5);
  EXPECT_EQ(record.info.locationSize,
            static_cast<std::int32_t>(scene.PathOf("Tone.m4r").size() + 1));
}

TEST_F(RingtoneCatalogue, ARecordIsServedWithoutTheLibraryDocument) {
  scene.Put("Tone.m4r");
  Load();
  TBXML* document = std::exchange(g_pGlobal->document, nullptr);
  EXPECT_THAT(ListedNames(playlist), ElementsAre("Tone"));
  g_pGlobal->document = document;
}

TEST_F(RingtoneCatalogue, RecordsStandInNoTrackTable) {
  Load();
  const std::int32_t without = g_pGlobal->trackCount;
  scene.Unload();
  scene.Put("Tone.m4r");
  Load();
  EXPECT_EQ(g_pGlobal->trackCount, without);
  EXPECT_EQ(GetSongCount(OpenAllSongs()), without);
}

TEST_F(RingtoneCatalogue, RingtonesAreFoundUnderTrackIdZero) {
  Load();
  std::int32_t index = 77;
  EXPECT_EQ(GetPlaylistByTrackId(0, &index), nullptr);
  EXPECT_EQ(index, 77);
  scene.Unload();
  scene.Put("Tone.m4r");
  Load();
  EXPECT_EQ(GetPlaylistByTrackId(0, &index), playlist);
  EXPECT_EQ(index, 0);
}

// ---- Tear-down ----------------------------------------------------------------------------------

TEST_F(RingtoneCatalogue, TheDestroyerTakesTheRingtonePlaylistAwayAndNoOther) {
  scene.Put("Tone.m4r");
  Load();
  EXPECT_EQ(DestroyRingtoneArray(), 0);
  EXPECT_EQ(GetPlaylistCount(0), kOwnPlaylists);
  EXPECT_EQ(DestroyRingtoneArray(), 0);
  EXPECT_EQ(GetPlaylistCount(0), kOwnPlaylists);
}

TEST_F(RingtoneCatalogue, TheBuilderCalledAgainListsTheFolderAnewInOnePlaylist) {
  scene.Put("a");
  Load();
  scene.Put("b");
  EXPECT_EQ(CreateRingtoneArray(), 0);
  EXPECT_EQ(GetPlaylistCount(0), kOwnPlaylists + 1);
  EXPECT_THAT(ListedNames(LastPlaylist()), ElementsAre("a", "b"));
}

TEST_F(RingtoneCatalogue, ThePlaylistDestroyerAloneReleasesTheRingtonesToo) {
  scene.Put("Tone.m4r");
  Load();
  EXPECT_EQ(DestroyPlaylistArray(), 0);
  EXPECT_EQ(DestroyRingtoneArray(), 0);
  EXPECT_EQ(CreateRingtoneArray(), 0);
}

TEST_F(RingtoneCatalogue, LoadingAndUnloadingWritesNoMessage) {
  scene.Put("Tone.m4r");
  const CapturedStderr log;
  Load();
  scene.Unload();
  EXPECT_EQ(log.Text(), "");
}

TEST(RingtonesWithoutALibrary, BuilderAndDestroyerFindNothingToDo) {
  const RingtoneScene scene;
  std::filesystem::remove(scene.home().PathOf("Music/iTunes/iTunes Music Library.xml"));
  const CapturedStderr log;
  EXPECT_EQ(AgentInitializer(), -1);
  EXPECT_EQ(CreateRingtoneArray(), 0);
  EXPECT_EQ(DestroyRingtoneArray(), 0);
  EXPECT_EQ(g_pGlobal->groups, nullptr);
  EXPECT_EQ(AgentFinalizer(), 0);
}

TEST(RingtonesBeforeTheFirstLoad, BuilderAndDestroyerFindNothingToDo) {
  GlobalState* state = std::exchange(g_pGlobal, nullptr);
  EXPECT_EQ(CreateRingtoneArray(), 0);
  EXPECT_EQ(DestroyRingtoneArray(), 0);
  g_pGlobal = state;
}

// ---- Exhausted memory ---------------------------------------------------------------------------

// The builder's own allocations, in this order.
enum Allocation { kPlaylist, kName, kPoolEntry, kGroupTable, kFirstRecord, kFirstName };

class RingtoneCatalogueInNeed : public RingtoneCatalogue {
 protected:
  void SetUp() override {
    // The first group is full: the ringtone playlist needs room to be made.
    std::string playlists;
    for (int i = 0; i < 32; ++i) {
      playlists += test::Playlist(test::IntegerPair("Distinguished Kind", 4));
    }
    scene.WriteLibrary(test::LibraryText({"", playlists}));
    Load();
    DestroyRingtoneArray();
    g_pGlobal->groups[0]->capacity = 32;  // as it was before the playlist
    for (const char* name : {"a", "b", "c"}) scene.Put(name);
  }

  void BuildWithFailureAt(std::int64_t allocation) {
    system::faults::FailAfter(allocation, true);
    EXPECT_EQ(CreateRingtoneArray(), 0);
    EXPECT_GT(system::faults::Asked(), allocation) << "nothing has failed";
    system::faults::Stop();
  }
};

TEST_F(RingtoneCatalogueInNeed, APlaylistThatCannotBeAppendedIsMissingAndNoOtherIsTakenForIt) {
  for (const Allocation allocation : {kPlaylist, kName, kPoolEntry, kGroupTable}) {
    BuildWithFailureAt(allocation);
    EXPECT_EQ(GetPlaylistCount(0), 32);
    EXPECT_EQ(RingtonePlaylist(*CurrentLibrary()), nullptr);
    EXPECT_EQ(DestroyRingtoneArray(), 0);
    EXPECT_EQ(GetPlaylistCount(0), 32);
    EXPECT_EQ(g_pGlobal->groups[0]->capacity, 32);
  }
}

TEST_F(RingtoneCatalogueInNeed, TheBuildStopsQuietlyAndKeepsTheRecordsMadeSoFar) {
  // After the first file the song table is there: a record, a name and a location each.
  struct Case {
    int allocation;
    std::vector<std::string> names;
  };
  const Case cases[] = {{kFirstRecord, {}},          {kFirstName, {}},
                        {kFirstName + 1, {}},        {kFirstName + 2, {}},
                        {kFirstName + 3, {"a"}},     {kFirstName + 4, {"a"}},
                        {kFirstName + 5, {"a"}},     {kFirstName + 6, {"a", "b"}},
                        {kFirstName + 8, {"a", "b"}}};
  for (const Case& expected : cases) {
    DestroyRingtoneArray();
    g_pGlobal->groups[0]->capacity = 32;
    const CapturedStderr log;
    BuildWithFailureAt(expected.allocation);
    EXPECT_EQ(ListedNames(RingtonePlaylist(*CurrentLibrary())), expected.names)
        << expected.allocation;
    EXPECT_EQ(log.Text(), "");
  }
}

TEST(StoreText, RefusesATextWhoseSizesWouldNotFitIntoTheirSum) {
  char* text = nullptr;
  std::int32_t size = 7;
  const char start = 'x';
  const std::string_view claimed(&start, (std::size_t{1} << 30));  // refused unread
  EXPECT_FALSE(StoreText(claimed, text, size));
  EXPECT_EQ(text, nullptr);
  EXPECT_EQ(size, 7);
}

TEST(RingtoneCatalogueAlone, WithoutAHomeFolderThePlaylistIsThereAndEmpty) {
  LibraryState state = {};
  state.pool = &state.ownPool;
  CreatePlaylists(state);
  CreateRingtones(state);
  ASSERT_NE(RingtonePlaylist(state), nullptr);
  EXPECT_EQ(RingtonePlaylist(state)->count, 0);
  DestroyRingtones(state);
  DestroyPlaylists(state);
  state.ownPool.Drain();
}

}  // namespace
}  // namespace tavrel
