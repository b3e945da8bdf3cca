// Song information and the list of all songs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/CapturedStderr.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/Survey.h"
#include "tests/support/TemporaryHome.h"

using namespace tavrel::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// A library whose tracks are the given ones, with everything reached through OpenAllSongs.
class Songs : public testing::Test {
 protected:
  void Load(const std::string& tracks, const std::string& playlists = {}) {
    home_.WriteLibrary(LibraryText({tracks, playlists}));
    library_.emplace(home_.path());
  }
  void LoadOne(const std::string& pairs) { Load(Track(1, pairs)); }
  const HostFunctions& functions() { return library_->functions(); }
  PlaylistRecord* All() { return functions().openAllSongs(); }
  SeenSong Song(std::int32_t index = 0) { return SeeSong(functions(), All(), index); }

  const TemporaryHome home_;
  std::optional<LoadedLibrary> library_;
};

}  // namespace

TEST_F(Songs, GiveSizesFirstAndThenTheTexts) {
  LoadOne(TextPair("Name", "AC&amp;DC") + TextPair("Location", "file:///Users/x/Music/A%20B.mp3") +
          TextPair("Artist", "Bj\u00f6rk") + TextPair("Album", "") +
          TextPair("Genre", "&#60;&#62;") + IntegerPair("Total Time", 206794) +
          IntegerPair("Play Count", 3) + IntegerPair("Track Number", 7) +
          BooleanPair("Movie", true));
  const SeenSong song = Song();
  EXPECT_EQ(song.name, (SeenText{10, "AC&DC"}));
  EXPECT_EQ(song.location, (SeenText{23, "/Users/x/Music/A B.mp3"}));
  EXPECT_EQ(song.artist, (SeenText{7, "Bj\u00f6rk"}));
  EXPECT_EQ(song.album, (SeenText{1, ""}));
  EXPECT_EQ(song.genre, (SeenText{11, "<>"}));
  EXPECT_EQ(song.totalTime, 206794);
  EXPECT_EQ(song.playCount, 3);
  EXPECT_EQ(song.trackNumber, 7);
  EXPECT_EQ(song.movie, 1);
}

TEST_F(Songs, WithoutTextsTakeTheSizeOfTheRecordAlone) {
  LoadOne("");
  EXPECT_EQ(Song(), SeenSong());
  SongInfo info = {};
  EXPECT_EQ(functions().getSongInfo(All(), 0, &info), 96);
}

TEST_F(Songs, WriteNothingForABadPosition) {
  LoadOne(TextPair("Name", "x"));
  for (const std::int32_t index : {1, 2, -1, INT32_MIN, INT32_MAX}) {
    SongInfo info;
    std::memset(&info, 0x3C, sizeof info);
    SongInfo before = info;
    EXPECT_EQ(functions().getSongInfo(All(), index, &info), 0);
    EXPECT_EQ(std::memcmp(&info, &before, sizeof info), 0);
  }
}

TEST_F(Songs, OverwriteTheSizesOfTheHostAndNeverReadThem) {
  LoadOne(TextPair("Name", "ten bytes"));
  SongInfo info = {};
  char name[16] = {};
  info.name = name;
  for (const std::int32_t hostSize : {0, 1, -1, INT32_MIN, INT32_MAX}) {
    info.nameSize = info.artistSize = hostSize;
    std::memset(name, '#', sizeof name - 1);
    EXPECT_EQ(functions().getSongInfo(All(), 0, &info), 106);
    EXPECT_EQ(info.nameSize, 10);
    EXPECT_EQ(info.artistSize, 0);
    EXPECT_STREQ(name, "ten bytes");
    EXPECT_STREQ(name + 10, "#####");
  }
}

TEST_F(Songs, WriteNothingBehindTheTerminatorOfADecodedText) {
  LoadOne(TextPair("Name", "AC&amp;DC"));
  SongInfo info = {};
  char name[] = "##########";
  info.name = name;
  EXPECT_EQ(functions().getSongInfo(All(), 0, &info), 106);
  EXPECT_EQ(std::string(name, 10), std::string("AC&DC\0####", 10));
}

TEST_F(Songs, LeaveTheBuffersOfMissingTextsAlone) {
  LoadOne(TextPair("Name", "x"));
  SongInfo info = {};
  char buffers[5][4];
  std::memset(buffers, '#', sizeof buffers);
  info.name = buffers[0];
  info.location = buffers[1];
  info.artist = buffers[2];
  info.album = buffers[3];
  info.genre = buffers[4];
  EXPECT_EQ(functions().getSongInfo(All(), 0, &info), 98);
  EXPECT_EQ(std::string(buffers[0], 4), std::string("x\0##", 4));
  for (int i = 1; i < 5; ++i) EXPECT_EQ(std::string(buffers[i], 4), "####");
}

TEST_F(Songs, FillOnlyTheTextsThatAreAskedFor) {
  LoadOne(TextPair("Name", "n") + TextPair("Genre", "g"));
  SongInfo info = {};
  char genre[2] = {};
  info.genre = genre;
  EXPECT_EQ(functions().getSongInfo(All(), 0, &info), 100);
  EXPECT_STREQ(genre, "g");
  EXPECT_EQ(info.name, nullptr);
  EXPECT_EQ(info.nameSize, 2);
}

TEST_F(Songs, AreReadOnceForAllPlaylists) {
  Load(Track(1, TextPair("Name", "before") + IntegerPair("Play Count", 4)),
       Playlist(TextPair("Name", "a"), {1}) + Playlist(TextPair("Name", "b"), {1}));
  const SeenSong before = Song();
  // Whoever reads the document again would now read blanks.
  struct Document {
    void* records[5];
    char* bytes;
    std::ptrdiff_t bytesLength;
  };
  auto* document = reinterpret_cast<Document*>(library_->Global()->document);
  std::memset(document->bytes, ' ', static_cast<std::size_t>(document->bytesLength));
  EXPECT_EQ(SeeSong(functions(), functions().openPlaylist(2, 0), 0), before);
  EXPECT_EQ(SeeSong(functions(), functions().openPlaylist(2, 1), 0), before);
}

TEST_F(Songs, TakeTheFirstPairOfAKey) {
  LoadOne(TextPair("Name", "first") + TextPair("Name", "second") + IntegerPair("Play Count", 1) +
          IntegerPair("Play Count", 2));
  EXPECT_EQ(Song().name.text, "first");
  EXPECT_EQ(Song().playCount, 1);
}

TEST_F(Songs, MatchKeysExactly) {
  LoadOne(TextPair("name", "x") + TextPair("Name ", "trimmed") + TextPair("ARTIST", "x") +
          TextPair("Album Artist", "x") + TextPair("Sort Album", "x") +
          IntegerPair("Total Time (ms)", 5));
  const SeenSong song = Song();
  EXPECT_EQ(song.name.text, "trimmed");  // the parser trims texts, those of keys too
  EXPECT_EQ(song.artist.size, 0);
  EXPECT_EQ(song.album.size, 0);
  EXPECT_EQ(song.totalTime, 0);
}

TEST_F(Songs, ReadTheMovieFlagFromBooleansAndNumbers) {
  Load(Track(1, BooleanPair("Movie", true)) + Track(2, BooleanPair("Movie", false)) + Track(3) +
       Track(4, IntegerPair("Movie", 2)) + Track(5, TextPair("Movie", "true")) +
       Track(6, "<key>Movie</key><true />") + Track(7, "<key>Movie</key><true></true>"));
  std::vector<int> movies;
  for (const SeenSong& song : SeeSongs(functions(), All())) movies.push_back(song.movie);
  EXPECT_THAT(movies, ElementsAre(1, 0, 0, 2, 0, 1, 1));
}

TEST_F(Songs, KeepTheLowBitsOfNumbersOutOfRange) {
  const auto time = [](int id, const std::string& value) {
    return Track(id, "<key>Total Time</key><integer>" + value + "</integer>");
  };
  Load(time(1, "2147483647") + time(2, "2147483648") + time(3, "4294967297") + time(4, "-1") +
       time(5, "9223372036854775808") + time(6, "-99999999999999999999") + time(7, "+5") +
       time(8, " \t12 34") + time(9, "--5") + time(10, "0x10") + time(11, "1e3"));
  std::vector<std::int32_t> times;
  for (const SeenSong& song : SeeSongs(functions(), All())) times.push_back(song.totalTime);
  EXPECT_THAT(times, ElementsAre(INT32_MAX, INT32_MIN, 1, -1, -1, 0, 5, 12, 0, 0, 1));
}

TEST_F(Songs, WithABooleanForATextHaveASizeAndNoText) {
  LoadOne(BooleanPair("Name", true) + BooleanPair("Artist", false) + BooleanPair("Location", true));
  const SeenSong song = Song();
  EXPECT_EQ(song.name, (SeenText{1, std::nullopt}));
  EXPECT_EQ(song.location, (SeenText{1, std::nullopt}));
  EXPECT_EQ(song.artist, (SeenText{0, std::nullopt}));
}

TEST_F(Songs, WithAnUnusableLocationHaveNone) {
  int id = 0;
  std::string tracks;
  for (const char* location :
       {"file:///a b", "file:///100%", "file:///%zz", "file:///%00", "file:///%FF", "file:///%C3",
        "file:///caf\u00e9", "file:///a&#60;b", "file:///[x]", "file:///a#b#c", "/plain path"}) {
    tracks += Track(++id, TextPair("Location", location));
  }
  Load(tracks);
  for (const SeenSong& song : SeeSongs(functions(), All())) {
    EXPECT_EQ(song.location, SeenText());
  }
}

TEST_F(Songs, LocationsOfEveryFormGiveTheirPath) {
  const std::pair<const char*, const char*> cases[] = {
      {"file:///Users/x/a.mp3", "/Users/x/a.mp3"},
      {"file://localhost/Users/x/a.mp3", "/Users/x/a.mp3"},
      {"file://localhost/D:/Music/a%20b.mp3", "/D:/Music/a b.mp3"},
      {"file://localhost//server/share/a.mp3", "//server/share/a.mp3"},
      {"http://radio.example:8000/live?x=1&#38;y=2#now", "/live"},
      {"http://radio.example", ""},
      {"file:///Users/x/folder/", "/Users/x/folder"},
      {"file:///Users/x/folder//", "/Users/x/folder/"},
      {"file:///", ""},
      {"", ""},
      {"relative/path.mp3", "relative/path.mp3"},
      {"file:///Rock%20%26%20Roll&#38;more.mp3", "/Rock & Roll&more.mp3"},
      {"file:///caf%C3%A9%23%3F%25.mp3", "/caf\u00e9#?%.mp3"},
      {"itms://x;y/a;b=c,d", "/a;b=c,d"},
  };
  int id = 0;
  std::string tracks;
  for (const auto& [location, path] : cases) tracks += Track(++id, TextPair("Location", location));
  Load(tracks);
  std::int32_t index = 0;
  for (const auto& [location, path] : cases) {
    const auto size = static_cast<std::int32_t>(std::strlen(path)) + 1;
    EXPECT_EQ(Song(index++).location, (SeenText{size, path})) << location;
  }
}

TEST_F(Songs, LogBrokenReferencesInTheOrderOfTheReads) {
  LoadOne(TextPair("Persistent ID", "&p;") + TextPair("Genre", "&g") + TextPair("Album", "x&b;") +
          TextPair("Artist", "&#;") + TextPair("Location", "file:///a&l;b") +
          TextPair("Name", "100%s &n;"));
  const CapturedStderr log;
  const SeenSong song = Song();
  EXPECT_THAT(log.Messages(), ElementsAre("XML text \"&n;\" Escaping has no numeric",
                                          "XML text \"&l;b\" Escaping has no numeric",
                                          "XML text \"&#;\" Escaping has no numeric",
                                          "XML text \"&b;\" Escaping has no numeric",
                                          "XML text \"&g\" Escaping has no ending",
                                          "XML text \"&p;\" Escaping has no numeric"));
  EXPECT_EQ(song.name, (SeenText{10, "100%s "}));
  EXPECT_EQ(song.location, (SeenText{3, "/a"}));
  EXPECT_EQ(song.artist, (SeenText{4, ""}));
  EXPECT_EQ(song.album, (SeenText{5, "x"}));
  EXPECT_EQ(song.genre, (SeenText{3, ""}));
}

TEST_F(Songs, HoldCDataAndCommentsAsTheirTextSays) {
  LoadOne(
      "<key>Name</key><string><![CDATA[<a> &#38; ]]>b<![CDATA[ > c]]></string>"
      "<key>Artist</key><string>a<!-- c -->b</string>");
  EXPECT_EQ(Song().name, (SeenText{16, "<a> & b > c"}));
  EXPECT_EQ(Song().artist, (SeenText{13, "a<!-- c -->b"}));
}

// ---- All songs
// ------------------------------------------------------------------------------------

TEST_F(Songs, AllOfThemStandInOnePlaylistInTheOrderOfTheFile) {
  Load(Track(30, TextPair("Name", "c")) + Track(10, TextPair("Name", "a")) +
           Track(20, TextPair("Name", "b")) + Track(10, TextPair("Name", "again")),
       Playlist(TextPair("Name", "p"), {10}));
  EXPECT_THAT(SongNames(functions(), All()), ElementsAre("c", "a", "b", "again"));
  EXPECT_EQ(functions().getPlaylistKind(All()), 0);
  EXPECT_EQ(functions().closePlaylist(All()), 1);
  EXPECT_EQ(All(), All());
}

TEST_F(Songs, AllOfThemStandInNoGroup) {
  Load(Track(1), Playlist(TextPair("Name", "p"), {1}));
  PlaylistRecord* all = All();
  for (std::int32_t group = 0; group < 3; ++group) {
    for (std::int32_t i = 0; i < functions().getPlaylistCount(group); ++i) {
      EXPECT_NE(functions().openPlaylist(group, i), all);
    }
  }
}

TEST_F(Songs, OfALibraryWithoutTracksAreAnEmptyPlaylist) {
  Load("");
  ASSERT_NE(All(), nullptr);
  EXPECT_EQ(functions().getSongCount(All()), 0);
  EXPECT_THAT(SeeSongs(functions(), All()), IsEmpty());
}

TEST_F(Songs, AreTheSameRecordsInEveryPlaylist) {
  Load(Track(1, TextPair("Name", "x")) + Track(2),
       Playlist(TextPair("Name", "a"), {2, 1, 1}) + Playlist(TextPair("Name", "b"), {1}));
  struct Record {
    void** tracks;
  };
  const auto* all = reinterpret_cast<const Record*>(All());
  const auto* a = reinterpret_cast<const Record*>(functions().openPlaylist(2, 0));
  const auto* b = reinterpret_cast<const Record*>(functions().openPlaylist(2, 1));
  EXPECT_EQ(a->tracks[0], all->tracks[1]);
  EXPECT_EQ(a->tracks[1], all->tracks[0]);
  EXPECT_EQ(a->tracks[2], all->tracks[0]);
  EXPECT_EQ(b->tracks[0], all->tracks[0]);
}
