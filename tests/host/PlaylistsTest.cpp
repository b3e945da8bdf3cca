#include <gmock/gmock.h>

#include "tests/host/Fixture.h"
#include "tests/support/Json.h"

namespace tavrel::test {
namespace {

using test::Json;

using testing::ElementsAre;

class Playlists : public HostTest {
 protected:
  Playlists() {
    file_ = Write(
        "library.xml",
        LibraryText(
            {{1, Property("Name", "Nimrod") + Number("Total Time", 60000)},
             {2, Property("Name", "\u00C9tude")}},
            {{Property("Name", "Music") + Number("Distinguished Kind", 4), {1}},
             {Property("Name", "Genius") + Number("Distinguished Kind", 26), {}},
             List("Evening", "A1", "", {1, 2, 1}),
             {List("Deep", "A3", "A2", {2})},
             {List("Folder", "A2", "", {2}).properties + "<key>Folder</key><true/>", {2}},
             {List("Wise", "A4", "A2", {1}).properties + "<key>Smart Info</key><data>AA</data>",
              {1}},
             List("Nothing", "", "", {})}));
  }

  static PlaylistText List(std::string_view name, std::string_view id, std::string_view parent,
                           std::vector<int> items) {
    return {Property("Name", name) + Property("Playlist Persistent ID", id) +
                Property("Parent Persistent ID", parent),
            std::move(items)};
  }

  Outcome Show(std::vector<std::string> arguments = {}) const {
    arguments.insert(arguments.begin(), {"--library", file_, "playlists"});
    return Run(arguments);
  }

  std::string file_;
};

TEST_F(Playlists, StandInTheirFolders) {
  const Outcome outcome = Show();
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_EQ(outcome.errors, "");
  EXPECT_THAT(Lines(outcome.output),
              ElementsAre("Name     Type    Songs  Time   At", "Evening  list        3  2:00  2:0",
                          "Folder   folder      1        2:2", "  Deep   list        1        2:1",
                          "  Wise   smart       1  1:00  2:3"));
}

TEST_F(Playlists, BuiltInAndEmptyOnesAreShownOnRequest) {
  const std::vector<std::string> lines = Lines(Show({"--all"}).output);
  ASSERT_EQ(lines.size(), 8u) << "without the list of ringtones, which is not in the file";
  EXPECT_EQ(lines[1], "Music    built-in      1  1:00  0:0");
  EXPECT_EQ(lines[2], "Genius   built-in      0        1:0");
  EXPECT_EQ(lines[7], "Nothing  list          0        2:4");
}

TEST_F(Playlists, ThoseThatHoldASongAreFound) {
  EXPECT_THAT(Lines(Show({"--with", "nimrod"}).output),
              ElementsAre("Name     Type    Songs  Time   At  Found",
                          "Evening  list        3  2:00  2:0      2",
                          "Folder   folder      1        2:2      0",
                          "  Wise   smart       1  1:00  2:3      1"));
  const Json lists = Json::Parse(Show({"--with", "etude", "--json"}).output);
  const Json songs = Json::Parse(Run({"--library", file_, "songs", "--json"}).output);
  ASSERT_EQ(lists.size(), 3u);
  EXPECT_EQ(lists[0]["found"][0], songs[1]) << "a song is the same object everywhere";
  EXPECT_EQ(Show({"--with", "zzz"}).exitCode, 1);
  EXPECT_EQ(Show({"--with", "zzz"}).errors, "tavrel: no playlist holds such a song\n");
}

TEST_F(Playlists, AsTabsCountTheSongsThatWereFound) {
  EXPECT_THAT(Lines(Show({"--with", "nimrod", "--format", "tsv"}).output),
              ElementsAre("id\tname\ttype\tfolder\tgroup\tposition\tkind\tsongs\tseconds\tfound",
                          "A1\tEvening\tlist\t\t2\t0\t0\t3\t120\t2",
                          "A2\tFolder\tfolder\t\t2\t2\t0\t1\t0\t0",
                          "A4\tWise\tsmart\tA2\t2\t3\t0\t1\t60\t1"));
  const Outcome none = Show({"--with", "zzz", "--format", "csv"});
  EXPECT_EQ(none.exitCode, 1);
  EXPECT_EQ(none.output, "id,name,type,folder,group,position,kind,songs,seconds,found\n");
  EXPECT_EQ(Show({"--format", "jsonl"}).exitCode, 2);
}

TEST_F(Playlists, AsJson) {
  const Json list = Json::Parse(Show({"--json"}).output);
  ASSERT_EQ(list.size(), 4u);
  EXPECT_EQ(list[2], Json::Parse(R"({"id":"A3","name":"Deep","type":"list","folder":"A2","group":2,
                                     "position":1,"kind":0,"songs":1,"seconds":0})"));
  EXPECT_EQ(list[0]["seconds"], 120);
  EXPECT_TRUE(list[0]["folder"].IsNull());
}

TEST_F(Playlists, ThatStandWithinEachOtherAreShownAllTheSame) {
  file_ = Write("circle.xml",
                LibraryText({{1, ""}}, {List("one", "B1", "B2", {1}), List("two", "B2", "B1", {1}),
                                        List("self", "B3", "B3", {1})}));
  EXPECT_THAT(Lines(Show({}).output).size(), 4u);
}

}  // namespace
}  // namespace tavrel::test
