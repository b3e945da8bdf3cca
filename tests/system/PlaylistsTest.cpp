// The playlist queries.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/LibraryTexts.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/Survey.h"
#include "tests/support/TemporaryHome.h"

using namespace tavrel::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string Named(const std::string& name) {
  return TextPair("Name", name);
}

std::string OfKind(int kind) {
  return IntegerPair("Distinguished Kind", kind);
}

// A library of five tracks with the given playlists, loaded.
class Playlists : public testing::Test {
 protected:
  void Load(const std::string& playlists) {
    const std::string tracks = Track(10) + Track(20) + Track(30) + Track(40) + Track(50);
    home_.WriteLibrary(LibraryText({tracks, playlists}));
    library_.emplace(home_.path());
  }
  const HostFunctions& functions() { return library_->functions(); }
  std::vector<std::string> Seen() { return Summaries(SeePlaylists(functions())); }
  // The Track IDs of a playlist, in its order.
  std::vector<int> Ids(const std::string& name) {
    struct Record {
      const char** tracks;
      std::int32_t capacity;
      std::int32_t count;
    };
    const auto* record = reinterpret_cast<const Record*>(PlaylistNamed(functions(), name));
    std::vector<int> ids;
    for (std::int32_t i = 0; record != nullptr && i < record->count; ++i) {
      std::int32_t id = 0;
      std::memcpy(&id, record->tracks[i] + 96, sizeof id);
      ids.push_back(id);
    }
    return ids;
  }

  const TemporaryHome home_;
  std::optional<LoadedLibrary> library_;
};

}  // namespace

TEST_F(Playlists, StandInGroupsByTheirKindInTheOrderOfTheFile) {
  std::string playlists;
  for (const int kind : {6, 19, 26, 5, 47, 31, 10, 0, 3, 2, 4, 55, -4, 200}) {
    playlists += Playlist(Named(std::string("k").append(std::to_string(kind))) + OfKind(kind));
  }
  Load(playlists + Playlist(Named("none")));
  EXPECT_THAT(Seen(),
              ElementsAre("0:19 k19 0", "0:5 k5 0", "0:31 k31 0", "0:10 k10 0", "0:3 k3 0",
                          "0:2 k2 0", "0:4 k4 0", "1:26 k26 0", "2:6 k6 0", "2:47 k47 0",
                          "2:0 k0 0", "2:55 k55 0", "2:-4 k-4 0", "2:200 k200 0", "2:0 none 0"));
}

TEST_F(Playlists, WhoseVisibleValueReadsAsZeroAreHidden) {
  const auto visible = [](const std::string& name, const std::string& value) {
    return Playlist(Named(name) + "<key>Visible</key>" + value, {10});
  };
  Load(visible("false", "<false/>") + visible("zero", "<integer>0</integer>") +
       visible("empty", "<integer/>") + visible("no digits", "<string>yes</string>") +
       visible("empty text", "<string></string>") + visible("false with blank", "<false />"));
  EXPECT_THAT(Seen(), IsEmpty());
}

TEST_F(Playlists, AreVisibleWithoutTheKeyAndWithAnyOtherValue) {
  const auto visible = [](const std::string& name, const std::string& value) {
    return Playlist(Named(name) + "<key>Visible</key>" + value, {10});
  };
  Load(Playlist(Named("no key"), {10}) + visible("true", "<true/>") +
       visible("one", "<integer>1</integer>") + visible("minus", "<integer>-1</integer>") +
       Playlist(Named("other case") + BooleanPair("visible", false), {10}) +
       Playlist(Named("no value") + "<key>Visible</key>"));
  EXPECT_THAT(Seen(), ElementsAre("2:0 no key 1", "2:0 true 1", "2:0 one 1", "2:0 minus 1",
                                  "2:0 other case 1", "2:0 no value 0"));
}

TEST_F(Playlists, WithoutItemsOrWithUnknownOnesAreListedAsEmpty) {
  Load(Playlist(Named("no list")) +
       Playlist(Named("empty list") + "<key>Playlist Items</key><array></array>") +
       Playlist(Named("empty element") + "<key>Playlist Items</key><array/>") +
       Playlist(Named("unknown"), {11, 9, 51, 0, -10}));
  EXPECT_THAT(Seen(), ElementsAre("2:0 no list 0", "2:0 empty list 0", "2:0 empty element 0",
                                  "2:0 unknown 0"));
}

TEST_F(Playlists, KeepTheOrderOfTheirItemsAndTheirRepeats) {
  Load(Playlist(Named("p"), {50, 10, 30, 10, 99, 20, 40, 50}));
  EXPECT_THAT(Ids("p"), ElementsAre(50, 10, 30, 10, 20, 40, 50));
}

TEST_F(Playlists, TakeTheFirstValueOfAnItemWhateverItsKey) {
  Load(Playlist(Named("p") +
                "<key>Items</key><array>"
                "<dict><key>Whatever</key><string> +20 x</string></dict>"
                "<dict><key>A</key><integer>30</integer><key>Track ID</key><integer>40</integer>"
                "</dict>"
                "<array><a/><b>10</b></array>"
                "</array>"));
  EXPECT_THAT(Ids("p"), ElementsAre(20, 30, 10));
}

TEST_F(Playlists, DropItemsWithoutAValue) {
  Load(Playlist(Named("p") + "<key>Items</key><array>"
                             "<dict/><dict></dict><dict><key>Track ID</key></dict>"
                             "<dict><key>Track ID</key><integer/></dict>"
                             "<dict><key>Track ID</key><true/></dict>"
                             "<dict><key>Track ID</key><dict><key>a</key></dict></dict>"
                             "<string>10</string>"
                             "<dict><key>Track ID</key><integer>50</integer></dict></array>"));
  EXPECT_THAT(Ids("p"), ElementsAre(50));
}

TEST_F(Playlists, TakeTheFirstArrayOfTheirDictionaryAsItemList) {
  Load(Playlist(Named("p") + "<key>Other</key><array>" + PlaylistItem(20) +
                "</array><key>Playlist Items</key><array>" + PlaylistItem(30) + "</array>"));
  EXPECT_THAT(Ids("p"), ElementsAre(20));
}

TEST_F(Playlists, AreTheChildrenOfTheFirstArrayWhateverTheirNames) {
  home_.WriteLibrary(
      "<plist><dict><key>Tracks</key><dict>" + Track(10) +
      "</dict><key>First</key><array><record><key>Name</key><string>a</string></record>"
      "<string>no pairs</string><dict/></array>"
      "<key>Playlists</key><array><dict><key>Name</key><string>b</string></dict></array></dict>"
      "</plist>");
  library_.emplace(home_.path());
  EXPECT_THAT(Seen(), ElementsAre("2:0 a 0", "2:0 - 0", "2:0 - 0"));
}

TEST_F(Playlists, ArrayMayStandBeforeTheTracks) {
  home_.WriteLibrary("<plist><dict><key>Playlists</key><array>" + Playlist(Named("p"), {10}) +
                     "</array><key>Tracks</key><dict>" + Track(10) + "</dict></dict></plist>");
  library_.emplace(home_.path());
  EXPECT_THAT(Seen(), ElementsAre("2:0 p 1"));
}

TEST_F(Playlists, LoseItemsWhenTrackIdsDoNotAscend) {
  home_.WriteLibrary(LibraryText({Track(50) + Track(40) + Track(30) + Track(20) + Track(10),
                                  Playlist(Named("p"), {10, 20, 30, 40, 50})}));
  library_.emplace(home_.path());
  EXPECT_THAT(Ids("p"), ElementsAre(30));  // the middle of the table
}

TEST_F(Playlists, FindOneOfSeveralTracksWithTheSameId) {
  home_.WriteLibrary(
      LibraryText({Track(7, Named("a")) + Track(7, Named("b")) + Track(7, Named("c")),
                   Playlist(Named("p"), {7, 7})}));
  library_.emplace(home_.path());
  EXPECT_THAT(SongNames(functions(), PlaylistNamed(functions(), "p")), ElementsAre("b", "b"));
}

TEST_F(Playlists, FindNegativeAndExtremeTrackIds) {
  home_.WriteLibrary(LibraryText({Track(INT32_MIN) + Track(-1) + Track(0) + Track(INT32_MAX),
                                  Playlist(Named("p"), {INT32_MAX, -1, INT32_MIN, 0, 1})}));
  library_.emplace(home_.path());
  EXPECT_THAT(Ids("p"), ElementsAre(INT32_MAX, -1, INT32_MIN, 0));
}

TEST_F(Playlists, BadPositionsAnswerNothing) {
  Load(Playlist(Named("p"), {10}));
  for (const std::int32_t group : {-1, 3, 4, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(functions().getPlaylistCount(group), 0);
    EXPECT_EQ(functions().openPlaylist(group, 0), nullptr);
  }
  for (const std::int32_t index : {-1, 1, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(functions().openPlaylist(2, index), nullptr);
    char buffer[8] = "before";
    EXPECT_EQ(functions().getPlaylistName(2, index, buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "before");
  }
}

TEST_F(Playlists, StayUsableAfterTheyAreClosed) {
  Load(Playlist(Named("p"), {10, 20}));
  PlaylistRecord* playlist = functions().openPlaylist(2, 0);
  EXPECT_EQ(functions().closePlaylist(playlist), 1);
  EXPECT_EQ(functions().closePlaylist(playlist), 1);
  EXPECT_EQ(functions().getSongCount(playlist), 2);
  EXPECT_EQ(functions().openPlaylist(2, 0), playlist);
}

// ---- Names
// ----------------------------------------------------------------------------------------

namespace {

struct NameCall {
  std::int32_t result;
  std::string buffer;
};

// Asks for the name of playlist 2:0 with a buffer of 64 '#' and the given size.
NameCall AskName(const HostFunctions& functions, std::int32_t bufferSize) {
  std::string buffer(64, '#');
  const std::int32_t result = functions.getPlaylistName(2, 0, buffer.data(), bufferSize);
  return {result, buffer};
}

std::string Padded(std::string text) {
  text.resize(64, '#');
  return text;
}

}  // namespace

TEST_F(Playlists, NameIsCopiedOnlyIntoABufferOfItsWholeSize) {
  Load(Playlist(Named("Rock &amp; Roll")));
  EXPECT_EQ(functions().getPlaylistName(2, 0, nullptr, 0), 16);
  EXPECT_EQ(functions().getPlaylistName(2, 0, nullptr, INT32_MAX), 16);
  for (const std::int32_t tooSmall : {15, 12, 11, 1, 0, -1, INT32_MIN}) {
    EXPECT_EQ(AskName(functions(), tooSmall).result, 16);
    EXPECT_EQ(AskName(functions(), tooSmall).buffer, Padded(""));
  }
  for (const std::int32_t enough : {16, 17, 64, INT32_MAX}) {
    EXPECT_EQ(AskName(functions(), enough).result, 16);
    EXPECT_EQ(AskName(functions(), enough).buffer, Padded(std::string("Rock & Roll\0", 12)));
  }
}

TEST_F(Playlists, WithoutANameGiveAnEmptyTextWhereThereIsRoom) {
  Load(Playlist(OfKind(0)));
  EXPECT_EQ(functions().getPlaylistName(2, 0, nullptr, 0), 0);
  for (const std::int32_t noRoom : {0, -1, INT32_MIN}) {
    EXPECT_EQ(AskName(functions(), noRoom).result, 0);
    EXPECT_EQ(AskName(functions(), noRoom).buffer, Padded(""));
  }
  for (const std::int32_t room : {1, 2, 64}) {
    EXPECT_EQ(AskName(functions(), room).result, 0);
    EXPECT_EQ(AskName(functions(), room).buffer, Padded(std::string(1, '\0')));
  }
}

TEST_F(Playlists, WithABooleanForANameHaveItsSizeAndNoText) {
  Load(Playlist(BooleanPair("Name", true)));
  EXPECT_EQ(functions().getPlaylistName(2, 0, nullptr, 0), 1);
  EXPECT_EQ(AskName(functions(), 0).buffer, Padded(""));
  EXPECT_EQ(AskName(functions(), 1).result, 1);
  EXPECT_EQ(AskName(functions(), 1).buffer, Padded(std::string(1, '\0')));
}

TEST_F(Playlists, WithAnEmptyNameHaveSizeOne) {
  Load(Playlist(Named("")));
  EXPECT_EQ(functions().getPlaylistName(2, 0, nullptr, 0), 1);
  EXPECT_EQ(AskName(functions(), 0).buffer, Padded(""));
  EXPECT_EQ(AskName(functions(), 1).buffer, Padded(std::string(1, '\0')));
}

TEST_F(Playlists, NameWithABrokenReferenceIsTheTextBeforeIt) {
  Load(Playlist(Named("Rock &nbsp; Roll")));
  EXPECT_EQ(functions().getPlaylistName(2, 0, nullptr, 0), 17);
  EXPECT_EQ(AskName(functions(), 17).buffer, Padded(std::string("Rock \0", 6)));
}

// ---- The playlist of a track
// ----------------------------------------------------------------------

namespace {

using ByTrackId = PlaylistRecord*(std::int32_t, std::int32_t*);

}  // namespace

TEST_F(Playlists, OfATrackIsTheFirstInTheOrderOfGroups) {
  Load(Playlist(Named("other"), {10, 20}) + Playlist(Named("genius") + OfKind(26), {30, 20}) +
       Playlist(Named("music") + OfKind(4), {40, 40, 50}));
  auto* find = library_->Get<ByTrackId*>("GetPlaylistByTrackId");
  std::int32_t index = -7;
  EXPECT_EQ(find(20, &index), PlaylistNamed(functions(), "genius"));
  EXPECT_EQ(index, 1);
  EXPECT_EQ(find(50, &index), PlaylistNamed(functions(), "music"));
  EXPECT_EQ(index, 2);
  EXPECT_EQ(find(40, &index), PlaylistNamed(functions(), "music"));
  EXPECT_EQ(index, 0);
  EXPECT_EQ(find(10, &index), PlaylistNamed(functions(), "other"));
  EXPECT_EQ(index, 0);
}

TEST_F(Playlists, OfATrackInNoneIsNullAndTheIndexStays) {
  Load(Playlist(Named("hidden") + BooleanPair("Visible", false), {10}) +
       Playlist(Named("other"), {20}));
  auto* find = library_->Get<ByTrackId*>("GetPlaylistByTrackId");
  std::int32_t index = -7;
  EXPECT_EQ(find(10, &index), nullptr);
  EXPECT_EQ(find(99, &index), nullptr);
  EXPECT_EQ(index, -7);
  EXPECT_EQ(find(20, nullptr), PlaylistNamed(functions(), "other"));
  ASSERT_NE(functions().openAllSongs(), nullptr);
  EXPECT_EQ(find(10, &index), nullptr);
}
