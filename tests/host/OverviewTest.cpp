#include <gmock/gmock.h>

#include "tests/host/Fixture.h"
#include "tests/support/Json.h"

namespace tavrel::test {
namespace {

using test::Json;
using testing::HasSubstr;
using testing::Not;

constexpr int kHour = 3600 * 1000;

TrackText MakeTrack(int id, std::string_view artist, std::string_view album, std::string_view genre,
                    long long time, int plays) {
  return {id, Property("Name", "Song " + std::to_string(id)) + Property("Artist", artist) +
                  Property("Album", album) + Property("Genre", genre) + Number("Total Time", time) +
                  Number("Play Count", plays)};
}

PlaylistText MakePlaylist(std::string_view name, int kind) {
  return {Property("Name", name) + (kind != 0 ? Number("Distinguished Kind", kind) : ""), {1}};
}

std::string MakeLibrary() {
  TrackText movie{7, Property("Name", "Fantasia") + "<key>Movie</key><true/>\n"};
  return LibraryText({MakeTrack(1, "Dvořák", "Greatest Hits", "Classical", kHour, 3),
                      MakeTrack(2, "Dvor\u030Ca\u0301k", "Greatest Hits", "Classical", kHour, 9),
                      MakeTrack(3, "Elgar", "Greatest Hits", "Classical", kHour, 0),
                      MakeTrack(4, "Elgar", "Enigma", "Classical", 2 * kHour, 9),
                      MakeTrack(5, "Satie",
                                "Gymnop\xC3\xA9"
                                "dies",
                                "Piano", -kHour, 1),
                      MakeTrack(6, "Elgar", "Enigma", "", 60000, 0), movie},
                     {MakePlaylist("Music", 4), MakePlaylist("Films", 2),
                      MakePlaylist("Genius", 26), MakePlaylist("Evening", 0)});
}

std::vector<std::string> Names(const Json& list) {
  std::vector<std::string> names;
  for (const Json& entry : list.Values()) names.push_back(entry["name"].Text());
  return names;
}

class Overview : public HostTest {
 protected:
  Json ReadJson(const std::string& library) const {
    const Outcome outcome = Run({"--library", Write("library.xml", library), "--json"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
    return Json::Parse(outcome.output);
  }
};

TEST_F(Overview, CountsSongsMoviesTimeAndPlaylists) {
  const Json overview = ReadJson(MakeLibrary());
  EXPECT_EQ(overview["library"], Path("library.xml"));
  EXPECT_EQ(overview["songs"], 7);
  EXPECT_EQ(overview["movies"], 1);
  EXPECT_EQ(overview["totalTime"], 5 * kHour + 60000) << "a negative time counts as none";
  EXPECT_EQ(overview["playlists"]["library"], 2) << "the list of ringtones is not in the file";
  EXPECT_EQ(overview["music"], 6);
  EXPECT_EQ(overview["podcasts"], 0);
  EXPECT_EQ(overview["playlists"]["genius"], 1);
  EXPECT_EQ(overview["playlists"]["other"], 1);
}

TEST_F(Overview, SpellingsOfOneNameAreOneArtist) {
  const Json overview = ReadJson(MakeLibrary());
  EXPECT_THAT(Names(overview["artists"]), testing::ElementsAre("Elgar", "Dvořák", "Satie"));
  EXPECT_EQ(overview["artists"][1]["songs"], 2);
  EXPECT_EQ(overview["artists"][1]["totalTime"], 2 * kHour);
}

TEST_F(Overview, AnAlbumOfAnotherArtistIsAnotherAlbum) {
  const Json overview = ReadJson(MakeLibrary());
  EXPECT_THAT(Names(overview["albums"]),
              testing::ElementsAre("Enigma", "Greatest Hits", "Greatest Hits", "Gymnopédies"));
  EXPECT_EQ(overview["albums"][1]["artist"], "Dvořák");
  EXPECT_EQ(overview["albums"][2]["artist"], "Elgar");
}

TEST_F(Overview, SongsOfOneTitleInOneFolderAreOneAlbum) {
  const auto tribute = [](int id, std::string_view artist, std::string_view folder) {
    TrackText track = MakeTrack(id, artist, "Tribute", "", 1000, 0);
    track.properties += Property("Location", "file:///Music/" + std::string(folder) + "/x.mp3");
    return track;
  };
  const Json overview =
      ReadJson(LibraryText({tribute(1, "A", "Compilations"), tribute(2, "B", "Compilations"),
                            tribute(3, "C", "C"), tribute(4, "B", "Other disc")}));
  ASSERT_THAT(Names(overview["albums"]), testing::ElementsAre("Tribute", "Tribute"));
  EXPECT_EQ(overview["albums"][0]["artist"], "Various Artists");
  EXPECT_EQ(overview["albums"][0]["songs"], 3) << "B's other disc belongs to the same album";
  EXPECT_EQ(overview["albums"][0]["totalTime"], 3000);
  EXPECT_EQ(overview["albums"][1]["artist"], "C");
}

TEST_F(Overview, AlbumArtistsAndCompilationsMakeAlbums) {
  const auto track = [](int id, std::string_view artist, const std::string& more) {
    return TrackText{
        id, Property("Name", "x") + Property("Artist", artist) + Property("Album", "Hits") + more};
  };
  const std::string flag = "<key>Compilation</key><true/>";
  const Json overview = ReadJson(
      LibraryText({track(1, "A", flag), track(2, "B", flag),
                   track(3, "C", Property("Album Artist", "Band")), track(4, "Band", "")}));
  ASSERT_THAT(Names(overview["albums"]), testing::ElementsAre("Hits", "Hits"));
  EXPECT_EQ(overview["albums"][0]["artist"], "Band");
  EXPECT_EQ(overview["albums"][1]["artist"], "Various Artists");
}

TEST_F(Overview, PodcastsAreCountedApart) {
  const Json overview =
      ReadJson(LibraryText({{1, "<key>Podcast</key><true/><key>Movie</key><true/>"}, {2, ""}}));
  EXPECT_EQ(overview["songs"], 2);
  EXPECT_EQ(overview["music"], 1);
  EXPECT_EQ(overview["movies"], 0);
  EXPECT_EQ(overview["podcasts"], 1);
}

TEST_F(Overview, SongsWithoutAGenreAreNotCountedThere) {
  const Json overview = ReadJson(MakeLibrary());
  EXPECT_THAT(Names(overview["genres"]), testing::ElementsAre("Classical", "Piano"));
}

TEST_F(Overview, MostPlayedSongsKeepTheFilesOrderWhenTheyAreEqual) {
  const Json overview = ReadJson(MakeLibrary());
  EXPECT_THAT(Names(overview["mostPlayed"]),
              testing::ElementsAre("Song 2", "Song 4", "Song 1", "Song 5"));
}

TEST_F(Overview, ListsHaveAtMostFiveEntries) {
  std::vector<TrackText> tracks;
  for (int id = 1; id <= 30; ++id) {
    const std::string name = "Artist " + std::to_string(id % 8);
    tracks.push_back(MakeTrack(id, name, name, name, 1000 * id, id));
  }
  const Json overview = ReadJson(LibraryText(tracks));
  for (const char* list : {"artists", "albums", "genres", "mostPlayed"}) {
    EXPECT_EQ(overview[list].size(), 5u) << list;
  }
  EXPECT_EQ(overview["mostPlayed"][4]["playCount"], 26);
}

TEST_F(Overview, AMissingNameIsNull) {
  const Json overview = ReadJson(LibraryText({{1, Number("Play Count", 2)}}));
  EXPECT_TRUE(overview["mostPlayed"][0]["name"].IsNull());
  EXPECT_TRUE(overview["artists"].empty());
}

TEST_F(Overview, TheScreenSaysTheSame) {
  const Outcome outcome = Run({"--library", Write("library.xml", MakeLibrary())});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_THAT(outcome.output,
              testing::StartsWith(Path("library.xml") + "\n6 songs, 1 movie, 5 hours 1 minute\n"));
  EXPECT_THAT(outcome.output, HasSubstr("1 Genius, 1 other\n"));
  EXPECT_THAT(outcome.output, HasSubstr("\nElgar       3  3:01:00\n"));
  EXPECT_THAT(outcome.output, HasSubstr("\nSong 2       Dvor\u030Ca\u0301k      9\n"));
}

TEST_F(Overview, TheSummaryFitsANarrowTerminal) {
  Command narrow;
  narrow.output = Stream::Terminal;
  narrow.columns = 40;
  narrow.folder = Path("");
  std::vector<TrackText> tracks;
  for (int id = 1; id <= 1200; ++id) tracks.push_back(MakeTrack(id, "", "", "", kHour + 61000, 0));
  tracks[0].properties += "<key>Movie</key><true/>\n";
  Write("library.xml", LibraryText(tracks, {MakePlaylist("Genius", 26), MakePlaylist("x", 0)}));
  const Outcome outcome = Run({"--library", "library.xml"}, narrow);
  EXPECT_THAT(outcome.output, HasSubstr("\n1,199 songs, 1 movie,\n  1,220 hours 20 minutes\n"
                                        "2 playlists: 0 library, 1 Genius,\n  1 other\n"));
  for (const std::string& line : Lines(outcome.output)) EXPECT_LE(line.size(), 40u) << line;
}

TEST_F(Overview, OnATerminalItSaysWhatToDoNextWithTheOptionsThatWereGiven) {
  Command terminal;
  terminal.output = Stream::Terminal;
  const std::string library = MakeLibrary();
  Write("home/Music/iTunes/iTunes Music Library.xml", library);
  terminal.folder = Path("home");
  EXPECT_THAT(
      Run({"--home", "."}, terminal).output,
      testing::EndsWith("\nNext: tavrel --home . and songs, search WORD, playlists, stats or "
                        "--help\n"));
  terminal.environment["HOME"] = Path("home");
  EXPECT_THAT(
      Run({}, terminal).output,
      testing::EndsWith("\nNext: tavrel songs, tavrel search WORD, tavrel playlists, tavrel "
                        "stats,\n  tavrel --help\n"));
}

TEST_F(Overview, AnEmptyLibraryHasAnOverviewToo) {
  const Outcome outcome = Run({"--library", Write("library.xml", LibraryText({}))});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_THAT(outcome.output, HasSubstr("\n0 songs, 0 seconds\n"));
  EXPECT_THAT(outcome.output, Not(HasSubstr("Artist")));
}

}  // namespace
}  // namespace tavrel::test
