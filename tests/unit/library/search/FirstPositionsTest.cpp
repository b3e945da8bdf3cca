// The place of a match is the one that GetPlaylistByTrackId() gives, whatever a callback does.
#include <gtest/gtest.h>

#include "agent/Exports.h"
#include "library/playlists/PlaylistTable.h"
#include "library/tracks/TrackTable.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/SongLibrary.h"
#include "xml/TBXML.h"

namespace {

using namespace tavrel::test;

// What each match must be reported with at this moment.
std::vector<Call> PlainPlaces(const std::vector<LibraryTrack>& tracks) {
  std::vector<Call> places;
  for (const LibraryTrack& track : tracks) {
    Call place = {nullptr, 0};
    place.playlist = GetPlaylistByTrackId(track.id, &place.index);
    places.push_back(place);
  }
  return places;
}

std::vector<LibraryTrack> Numbered(const std::vector<std::int32_t>& ids) {
  std::vector<LibraryTrack> tracks;
  for (const std::int32_t id : ids) tracks.push_back({id, "song"});
  return tracks;
}

TEST(FirstPositions, TheFirstPlaylistOfTheFirstGroupWins) {
  const auto tracks = Numbered({1, 2, 3, 4});
  const SongLibrary library(tracks, {{0, {4, 3, 2, 1, 3}}, {26, {2, 3}}, {4, {3, 3}}, {0, {4}}});
  const Heard heard = Search({.name = "song"});
  EXPECT_EQ(heard.calls, PlainPlaces(tracks));
  EXPECT_EQ(heard.calls, (std::vector<Call>{{OpenPlaylist(2, 0), 3},
                                            {OpenPlaylist(1, 0), 0},
                                            {OpenPlaylist(0, 0), 0},
                                            {OpenPlaylist(2, 0), 0}}));
}

TEST(FirstPositions, TracksThatShareATrackIdShareThePlace) {
  const auto tracks = Numbered({1, 5, 5, 5, 9});
  const SongLibrary library(tracks, {{0, {9, 5}}});
  const Heard heard = Search({.name = "song"});
  EXPECT_EQ(heard.calls, PlainPlaces(tracks));
  EXPECT_EQ(Placed(heard), (std::vector<std::size_t>{1, 2, 3, 4}));
}

TEST(FirstPositions, OutOfOrderAndNegativeTrackIdsAreFoundAsThePlaylistsHoldThem) {
  const auto tracks = Numbered({7, -3, 2147483647, 7, 1, -2147483647, 2});
  const SongLibrary library(tracks, {{0, {1, 2, 7, -3, 2147483647, -2147483647}}, {4, {7, 2}}});
  EXPECT_EQ(Search({.name = "song"}).calls, PlainPlaces(tracks));
}

TEST(FirstPositions, RandomLibrariesAgreeWithThePlainScan) {
  Random random(3);
  for (int round = 0; round < Rounds(120); ++round) {
    std::vector<std::int32_t> ids;
    std::int32_t id = static_cast<std::int32_t>(random.Below(4)) - 2;
    for (std::size_t count = random.Below(40); count > 0; --count) {
      ids.push_back(id);
      id += static_cast<std::int32_t>(random.Below(3));
    }
    std::vector<LibraryPlaylist> playlists;
    for (std::size_t count = random.Below(6); count > 0; --count) {
      LibraryPlaylist playlist{random.Below(2) == 0 ? 0 : random.Below(2) == 0 ? 4 : 26, {}};
      for (std::size_t items = random.Below(12); items > 0; --items) {
        playlist.items.push_back(static_cast<std::int32_t>(random.Below(60)) - 2);
      }
      playlists.push_back(playlist);
    }
    std::vector<std::string> ringtones;
    if (random.Below(2) == 0) ringtones = {"Bell.m4r"};
    const auto tracks = Numbered(ids);
    const SongLibrary library(tracks, playlists, ringtones);
    EXPECT_EQ(Search({.name = "song"}).calls, PlainPlaces(tracks));
  }
}

TEST(FirstPositions, ATrackWithoutIdIsTakenForARingtoneUnlessItStandsInTheFirstGroup) {
  const auto tracks = Numbered({0, 1});
  {
    const SongLibrary library(tracks, {{0, {0, 1}}}, {"Bell.m4r"});
    EXPECT_EQ(Search({.name = "song"}).calls,
              (std::vector<Call>{{OpenPlaylist(0, 0), 0}, {OpenPlaylist(2, 0), 1}}));
  }
  const SongLibrary library(tracks, {{4, {1, 0}}}, {"Bell.m4r"});
  EXPECT_EQ(Search({.name = "song"}).calls,
            (std::vector<Call>{{OpenPlaylist(0, 0), 1}, {OpenPlaylist(0, 0), 0}}));
}

// Searches the whole library, does something in the callback of the second track, and compares each
// call with what the plain scan says at that moment.
void CheckAgainstPlainScan(const std::vector<LibraryTrack>& tracks, const InCallback& change) {
  std::vector<Call> expected;
  const auto inCallback = [&](std::size_t call) {
    expected.push_back(PlainPlaces(tracks)[call]);
    return call == 1 ? change(call) : 1;
  };
  for (int again = 0; again < 2; ++again) {
    expected.clear();
    const Heard heard = Search({.name = "song"}, inCallback);
    EXPECT_EQ(heard.count, static_cast<std::int32_t>(tracks.size()));
    EXPECT_EQ(heard.calls, expected);
  }
}

TEST(FirstPositions, ARingtoneImportedByTheCallbackCountsFromThenOn) {
  const StandInRunner runner(kRecord);
  const auto tracks = Numbered({0, 0, 0, 1, 2});
  const SongLibrary library(tracks, {{0, {0, 1, 2}}});
  const auto import = [](std::size_t) {
    EXPECT_EQ(AppendRingtone("/tones/New.m4r"), 0);
    return std::int32_t{1};
  };
  CheckAgainstPlainScan(tracks, import);
  EXPECT_EQ(GetSongCount(OpenPlaylist(0, 0)), 2) << "one for each search";
}

// Groups stay allocated when they are made anew. What is remembered here does not count as a leak.
std::vector<PlaylistGroup**>* abandonedGroups = nullptr;

std::int32_t MakePlaylistsAnew() {
  if (abandonedGroups == nullptr) abandonedGroups = new std::vector<PlaylistGroup**>;
  abandonedGroups->push_back(g_pGlobal->groups);
  return CreatePlaylistArray();
}

TEST(FirstPositions, RecordsOfPlaylistsThatAreMadeAnewStayAllocated) {
  const SongLibrary library(Numbered({0, 1}), {{4, {1, 0}}});
  DestroyRingtoneArray();
  PlaylistRecord* former = OpenPlaylist(0, 0);
  MakePlaylistsAnew();
  EXPECT_NE(OpenPlaylist(0, 0), former);
  DestroyPlaylistArray();
  EXPECT_EQ(GetPlaylistKind(former), 4);
  EXPECT_EQ(GetSongCount(former), 2);
}

TEST(FirstPositions, PlaylistsThatTheCallbackChangesCountFromThenOn) {
  const auto tracks = Numbered({0, 1, 2, 3, 4});
  const std::vector<LibraryPlaylist> playlists = {{4, {0}}, {0, {4, 3, 2, 1, 0}}};
  const auto itemsOfOther = [] {
    // The items of the second playlist, out of the document.
    const TBXMLElement* first =
        TBXML::childElementNamed("array", g_pGlobal->document->rootXMLElement()->firstChild)
            ->firstChild;
    return first->nextSibling;
  };
  const std::vector<InCallback> changes = {
      [&](std::size_t) { return CreatePlaylistTrack(OpenPlaylist(0, 0), itemsOfOther()) + 1; },
      [](std::size_t) { return CreateRingtoneArray() + 1; },
      [](std::size_t) { return DestroyRingtoneArray() + 1; },
      [](std::size_t) { return DestroyPlaylistArray() + 1; },
      [](std::size_t) { return DestroyPlaylistArray() + CreatePlaylistArray() + 1; },
      [](std::size_t) { return CreateTrackArray() + 1; }};
  for (const InCallback& change : changes) {
    const SongLibrary library(tracks, playlists, {"Bell.m4r"});
    CheckAgainstPlainScan(tracks, change);
  }
  const std::vector<InCallback> changesWithoutRingtones = {
      [](std::size_t) { return DestroyPlaylistArray() + 1; },
      [](std::size_t) { return MakePlaylistsAnew() + 1; }};
  for (const InCallback& change : changesWithoutRingtones) {
    const SongLibrary library(tracks, playlists);
    DestroyRingtoneArray();
    CheckAgainstPlainScan(tracks, change);
  }
}

TEST(FirstPositions, TheRingtonePlaylistMayComeAndGo) {
  const auto tracks = Numbered({0, 0, 0, 0, 1, 2});
  const std::vector<LibraryPlaylist> playlists = {{4, {1}}, {0, {2, 1, 0}}};
  const std::vector<InCallback> changes = {
      [](std::size_t) { return DestroyRingtoneArray() + 1; },
      [](std::size_t) { return CreateRingtoneArray() + 1; },
      [](std::size_t) { return DestroyRingtoneArray() + CreateRingtoneArray() + 1; }};
  for (const InCallback& change : changes) {
    for (const bool atFirst : {true, false}) {
      const SongLibrary library(tracks, playlists, {"Bell.m4r"});
      if (!atFirst) DestroyRingtoneArray();
      CheckAgainstPlainScan(tracks, change);
    }
  }
}

TEST(FirstPositions, ACallbackMaySearchItself) {
  const auto tracks = Numbered({1, 2, 3});
  const SongLibrary library(tracks, {{0, {3, 1, 2}}});
  std::int32_t inner = 0;
  std::vector<Call> innerCalls;
  const auto search = [&](std::size_t) {
    SongInfo terms = {};
    char wanted[] = "so";
    terms.name = wanted;
    const auto keep = [](PlaylistRecord* playlist, std::int32_t index, void* context) {
      static_cast<std::vector<Call>*>(context)->push_back({playlist, index});
      return std::int32_t{1};
    };
    inner += SearchSong(&terms, keep, &innerCalls);
    return std::int32_t{1};
  };
  const Heard heard = Search({.name = "song"}, search);
  EXPECT_EQ(heard.count, 3);
  EXPECT_EQ(inner, 9);
  EXPECT_EQ(heard.calls, PlainPlaces(tracks));
  ASSERT_EQ(innerCalls.size(), 9u);
  EXPECT_EQ(innerCalls[7], heard.calls[1]);
}

TEST(FirstPositions, ACallbackMayReadWhatItIsGiven) {
  const auto tracks = Numbered({1, 2, 3});
  const SongLibrary library(tracks, {{0, {3, 1, 2}}});
  const auto read = [](std::size_t) {
    SongInfo info = {};
    EXPECT_GT(GetSongInfo(OpenPlaylist(2, 0), 1, &info), 0);
    EXPECT_EQ(GetSongCount(OpenAllSongs()), 3);
    return std::int32_t{1};
  };
  EXPECT_EQ(Search({.name = "song"}, read).calls, PlainPlaces(tracks));
}

GlobalState* abandonedLibrary = nullptr;  // stays allocated when a library is loaded over another

TEST(FirstPositions, AfterACallbackHasLoadedAnotherLibraryItsPlaylistsCount) {
  const auto tracks = Numbered({1, 2, 3, 4});
  const SongLibrary library(tracks, {{0, {4, 3, 2, 1}}});
  std::optional<SongLibrary> other;
  const auto load = [&](std::size_t call) {
    if (call != 1) return 1;
    abandonedLibrary = g_pGlobal;
    other.emplace(Numbered({3, 4}), std::vector<LibraryPlaylist>{{26, {4}}});
    return 1;
  };
  const Heard heard = Search({.name = "song"}, load);
  EXPECT_EQ(heard.count, 4);
  EXPECT_EQ(heard.calls[2], (Call{nullptr, 0}));
  EXPECT_EQ(heard.calls[3], (Call{OpenPlaylist(1, 0), 0}));
}

}  // namespace
