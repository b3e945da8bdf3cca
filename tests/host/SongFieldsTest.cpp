// What --fields and --sort choose; check_formats.py reads the formats.
#include <gmock/gmock.h>

#include "tests/host/Fixture.h"
#include "tests/support/Json.h"

namespace tavrel::test {
namespace {

using test::Json;
using testing::ElementsAre;
using testing::HasSubstr;

class SongFields : public HostTest {
 protected:
  SongFields() { file_ = WriteTracks(""); }

  std::string WriteTracks(const std::string& more) const {
    return Write("library.xml",
                 LibraryText({{1, Property("Name", "Nimrod") + Number("Year", 1899) +
                                      Number("Total Time", 245120) + more},
                              {2, Property("Name", "\u00C9tude") + Number("Year", 1833)},
                              {3, Property("Name", "allegro") + Number("Year", 1899)},
                              {4, ""}}));
  }

  Outcome List(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--library", file_, "songs"});
    return Run(arguments);
  }

  Json First(std::vector<std::string> arguments = {}) const {
    arguments.push_back("--json");
    return Json::Parse(List(arguments).output)[0];
  }

  std::string file_;
};

TEST_F(SongFields, AreTheColumnsInTheOrderInWhichTheyAreNamed) {
  EXPECT_THAT(Lines(List({"--fields", "year,NAME,seconds"}).output),
              ElementsAre("#  Year  Name     Time", "0  1899  Nimrod   4:05", "1  1833  \u00C9tude",
                          "2  1899  allegro", "3"));
  EXPECT_THAT(Lines(List({"--fields", "year, name", "--format", "csv"}).output)[0], "year,name");
}

TEST_F(SongFields, SortWithoutCaseAndAccentsAndLeaveMissingOnesLast) {
  const auto names = [this](std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--fields", "name", "--format", "tsv"});
    return Lines(List(arguments).output);
  };
  EXPECT_THAT(names({"--sort", "name"}),
              ElementsAre("name", "allegro", "\u00C9tude", "Nimrod", ""));
  EXPECT_THAT(names({"--sort", "name", "--reverse"}),
              ElementsAre("name", "Nimrod", "\u00C9tude", "allegro", ""));
  EXPECT_THAT(names({"--sort", "year"}), ElementsAre("name", "\u00C9tude", "Nimrod", "allegro", ""))
      << "equal ones keep the file's order";
  EXPECT_THAT(names({"--sort", "year,name"}),
              ElementsAre("name", "\u00C9tude", "allegro", "Nimrod", ""));
  EXPECT_THAT(names({"--reverse"}), ElementsAre("name", "", "allegro", "\u00C9tude", "Nimrod"));
}

TEST_F(SongFields, AnUnknownOneIsWrongUsageAndToldTheNearest) {
  const Outcome outcome = List({"--fields", "name,albumartst"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.errors,
              HasSubstr("there is no field \"albumartst\"; do you mean albumArtist?"));
  EXPECT_EQ(List({"--sort", "nmae"}).exitCode, 2);
  EXPECT_THAT(List({"--sort", "nmae"}).errors, HasSubstr("do you mean name?"));
  for (const auto& [guess, field] : {std::pair("title", "name"),
                                     {"duration", "seconds"},
                                     {"Play Count", "plays"},
                                     {"lastplay", "lastPlayed"},
                                     {"album rating", "albumRating"}}) {
    EXPECT_THAT(List({"--fields", guess}).errors,
                HasSubstr("\"; do you mean " + std::string(field) + "?\n"));
  }
  EXPECT_THAT(List({"--sort", "-year"}).errors, HasSubstr("do you mean year? --reverse turns"));
  EXPECT_THAT(List({"--fields", "name,"}).errors, HasSubstr("a name of a field is missing\n"));
  for (const std::string& line : Lines(List({"--fields", "x"}).errors)) EXPECT_LE(line.size(), 80u);
  EXPECT_EQ(List({"--sort", "all"}).exitCode, 2);
  EXPECT_EQ(List({"--fields", ""}).exitCode, 2);
}

TEST_F(SongFields, TheFirstOfTwoEqualKeysCounts) {
  file_ = WriteTracks(Number("Rating", 40) + Number("Rating", 100) + Property("Name", "other") +
                      Property("Mood", "calm") + Property("Mood", "wild"));
  const Json song = First({"--fields", "all"});
  EXPECT_EQ(song["rating"], 40);
  EXPECT_EQ(song["name"], "Nimrod");
  EXPECT_EQ(song["Mood"], "calm");
}

TEST_F(SongFields, NoKeyOfTheFileGoesByTheNameOfAField) {
  file_ = WriteTracks(Property("artist", "a key") + Property("key:artist", "another") +
                      Property("lists", "a third") + Property("Artist", "Elgar"));
  const Json song = First({"--fields", "all"});
  EXPECT_EQ(song["artist"], "Elgar");
  EXPECT_EQ(song["key:artist"], "a key");
  EXPECT_EQ(song["key:key:artist"], "another");
  EXPECT_EQ(song["key:lists"], "a third");
  EXPECT_THAT(Lines(List({"--fields", "all", "--format", "csv"}).output)[0],
              HasSubstr(",Track ID,key:artist,key:key:artist,key:lists"));
}

TEST_F(SongFields, AKeyThatOnlyTheLastSongHasIsAColumnOfAll) {
  file_ =
      Write("late.xml", LibraryText({{1, Property("Mood", "calm")},
                                     {2, ""},
                                     {3, Property("Key", "D, minor") + Property("Mood", "x")}}));
  const auto csv = [this](std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--fields", "all", "--format", "csv"});
    std::vector<std::string> rows;
    for (const std::string& line : Lines(List(arguments).output)) {
      rows.push_back(line.substr(line.find(",Track ID") != std::string::npos
                                     ? line.find(",Track ID")
                                     : line.find(",none,") + 5));
    }
    return rows;
  };
  EXPECT_THAT(csv({}), ElementsAre(",Track ID,Mood,Key", ",1,calm,", ",2,,", ",3,x,\"D, minor\""));
  EXPECT_THAT(csv({"--reverse"}),
              ElementsAre(",Track ID,Mood,Key", ",3,x,\"D, minor\"", ",2,,", ",1,calm,"));
  const Json songs = Json::Parse(List({"--fields", "all", "--json"}).output);
  EXPECT_TRUE(songs[0]["Key"].IsNull());
  EXPECT_EQ(songs[0]["Mood"], "calm");
  EXPECT_TRUE(songs[1]["Mood"].IsNull());
  EXPECT_EQ(songs[2]["Key"], "D, minor");
}

TEST_F(SongFields, ValuesOfAnotherTypeAreNone) {
  file_ = WriteTracks(
      Property("Rating", "many") + Number("Bit Rate", -5) + Property("Play Count", "007") +
      Property("Skip Count", "99999999999999999999") + Property("Date Added", "2015-05-18") +
      Property("Compilation", "true") + "<key>Artist</key><array/><key>Podcast</key><false/>");
  const Json song = First();
  EXPECT_TRUE(song["rating"].IsNull());
  EXPECT_EQ(song["bitRate"], -5);
  EXPECT_EQ(song["plays"], 7);
  EXPECT_TRUE(song["skips"].IsNull());
  EXPECT_TRUE(song["added"].IsNull());
  EXPECT_EQ(song["compilation"], true);
  EXPECT_TRUE(song["artist"].IsNull());
  EXPECT_EQ(song["podcast"], false);
}

TEST_F(SongFields, OtherKeysAreNumbersWhereJsonHasThemSo) {
  file_ = WriteTracks(Number("Even", 70) + "<key>Odd</key><integer>007</integer>");
  const Json song = First({"--fields", "all"});
  EXPECT_EQ(song["Even"], 70);
  EXPECT_EQ(song["Odd"], "007");
}

TEST_F(SongFields, SecondsHaveUpToThreeDecimalPlaces) {
  for (const auto& [time, seconds] : {std::pair(245120, "245.12"),
                                      {245000, "245"},
                                      {7, "0.007"},
                                      {-7, "-0.007"},
                                      {-1500, "-1.5"},
                                      {0, "0"}}) {
    file_ = Write("time.xml", LibraryText({{1, Number("Total Time", time)}}));
    EXPECT_EQ(Lines(List({"--fields", "seconds", "--format", "tsv"}).output)[1], seconds);
  }
}

TEST_F(SongFields, AFileThatIsHereIsFound) {
  const std::string here = Write("here.mp3", "x");
  file_ = WriteTracks(Property("Location", "FILE://" + here));
  EXPECT_EQ(First()["path"], here);
  EXPECT_EQ(First()["status"], "found");
  file_ = WriteTracks(Property("Location", "file://" + here + "x"));
  EXPECT_TRUE(First()["path"].IsNull());
  EXPECT_EQ(First()["status"], "missing");
  file_ = WriteTracks(Property("Location", "file:///%zz"));
  EXPECT_TRUE(First()["path"].IsNull());
  EXPECT_EQ(First()["status"], "missing");
  file_ = WriteTracks(Property("Track Type", "Remote"));
  EXPECT_EQ(First()["status"], "remote");
  file_ = WriteTracks("");
  EXPECT_EQ(First()["status"], "none");
}

TEST_F(SongFields, FilesAreWhereTheOptionsSay) {
  file_ = WriteTracks(Property("Location", "file://localhost/C:/Old/A%20B/Caf%C3%A9.mp3"));
  const std::string here = Write("new/A B/cafe\u0301.mp3", "x");
  EXPECT_EQ(First()["status"], "missing");
  const Json song = First({"--map", "c:\\Old=" + Path("new")});
  EXPECT_EQ(song["status"], "respelled");
  EXPECT_EQ(song["path"], here);
  EXPECT_EQ(First({"--music", Path("new/..")})["status"], "missing");
  const Json told = First({"--map", "c:\\Old=/mnt/x", "--paths", "nfd"});
  EXPECT_EQ(told["path"], "/mnt/x/A B/Cafe\u0301.mp3");
  EXPECT_TRUE(told["status"].IsNull());
  EXPECT_EQ(First({"--paths", "raw"})["path"], "/C:/Old/A B/Caf\u00E9.mp3");
}

TEST_F(SongFields, FilesInFoldersThatMayNotBeListedAreLookedForOneByOne) {
  const std::string here = Write("x/cafe\u0301.mp3", "x");
  const auto statusOf = [this](const std::string& location) {
    file_ = WriteTracks(Property("Location", "file://" + Path(location)));
    Command command;
    command.environment = {{"LD_PRELOAD", TAVREL_FAILING_CALLS},
                           {"FAULT_KIND", "list"},
                           {"FAULT_NUMBER", "0"},
                           {"FAULT_AFTER", "1"}};
    const Outcome outcome = Run({"--library", file_, "songs", "--json"}, command);
    return Json::Parse(outcome.output)[0]["status"].Text();
  };
  EXPECT_EQ(statusOf("x/cafe%CC%81.mp3"), "found");
  EXPECT_EQ(statusOf("x/caf%C3%A9.mp3"), "respelled");
  EXPECT_EQ(statusOf("x/caf%C3%A9s.mp3"), "missing");
  EXPECT_EQ(statusOf("y/cafe%CC%81.mp3"), "missing");
}

TEST_F(SongFields, WhatSaysNoPlaceIsWrongUsage) {
  for (const std::string map : {"x", "=/x", "/x=", "Music=/x", "file:///%zz=/x"}) {
    EXPECT_EQ(List({"--map", map}).exitCode, 2) << map;
    EXPECT_THAT(List({"--map", map}).errors, HasSubstr("--map " + map + ": ")) << map;
  }
  EXPECT_EQ(List({"--music", ""}).exitCode, 2);
  EXPECT_THAT(List({"--music", Path("none")}).errors, HasSubstr("there is no such folder"));
  EXPECT_EQ(List({"--paths", "nfkc"}).exitCode, 2);
}

}  // namespace
}  // namespace tavrel::test
