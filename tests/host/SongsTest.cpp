#include <gmock/gmock.h>

#include "tests/host/Fixture.h"

namespace tavrel::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class Songs : public HostTest {
 protected:
  Songs() {
    TrackText nimrod{1, Property("Name", "Nimrod") + Property("Artist", "Elgar &#38; Friends") +
                            Property("Album", "Enigma") + Property("Genre", "Classical") +
                            Number("Total Time", 245000) + Number("Play Count", 12) +
                            Number("Track Number", 9)};
    file_ = Write("library.xml", LibraryText({nimrod, {2, Property("Name", "Vltava")}, {3, ""}},
                                             {{Property("Name", "Evening"), {2, 1}},
                                              {Property("Name", "Twice"), {1}},
                                              {Property("Name", "Twice"), {2}},
                                              {Property("Name", "Dvor\u030Ca\u0301k"), {1}},
                                              {Property("Name", "Morning Music"), {2}},
                                              {Property("Name", "Nothing"), {}},
                                              {Property("Name", "2:0"), {3}}}));
  }

  Outcome List(const std::string& playlist) const {
    return Run({"--library", file_, "songs", playlist});
  }

  void ExpectNotFound(const std::string& playlist, const std::string& message) const {
    const Outcome outcome = List(playlist);
    EXPECT_EQ(outcome.exitCode, 1) << playlist;
    EXPECT_EQ(outcome.output, "") << playlist;
    EXPECT_EQ(outcome.errors, "tavrel: " + message);
  }

  std::string file_;
};

TEST_F(Songs, StandInTheOrderOfThePlaylist) {
  const Outcome outcome = List("Evening");
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_EQ(outcome.errors, "");
  EXPECT_THAT(Lines(outcome.output),
              ElementsAre("#  Name    Artist           Album   Track  Genre      Time  Plays",  //
                          "0  Vltava",
                          "1  Nimrod  Elgar & Friends  Enigma      9  Classical  4:05     12"));
}

TEST_F(Songs, AllOfThemStandInTheOrderOfTheFile) {
  const Outcome outcome = Run({"--library", file_, "songs", "--all"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  const std::vector<std::string> lines = Lines(outcome.output);
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_THAT(lines[1], HasSubstr("Nimrod"));
  EXPECT_THAT(lines[2], HasSubstr("Vltava"));
  EXPECT_EQ(lines[3], "2");
}

TEST_F(Songs, APlaylistIsFoundByItsPlace) {
  EXPECT_EQ(List("2:0").output, List("Evening").output) << "also when another has it as its name";
  EXPECT_THAT(List("2:2").output, HasSubstr("Vltava"));
}

TEST_F(Songs, AnExactNameGoesBeforeOneThatDiffersInCase) {
  const std::string file = Write(
      "case.xml", LibraryText({{1, Property("Name", "low")}, {2, Property("Name", "high")}},
                              {{Property("Name", "mix"), {1}}, {Property("Name", "MIX"), {2}}}));
  EXPECT_THAT(Run({"--library", file, "songs", "MIX"}).output, HasSubstr("high"));
  EXPECT_THAT(Run({"--library", file, "songs", "mix"}).output, HasSubstr("low"));
  EXPECT_THAT(Run({"--library", file, "songs", "Mix"}).errors, HasSubstr("2 playlists are named"));
}

TEST_F(Songs, CaseAndCompositionOfANameDoNotMatter) {
  EXPECT_EQ(List("EVENING").exitCode, 0);
  EXPECT_EQ(List("Dvořák").exitCode, 0);
  EXPECT_EQ(List("DVOŘÁK").exitCode, 0);
}

TEST_F(Songs, ANameOfSeveralPlaylistsListsTheirPlaces) {
  ExpectNotFound("Twice",
                 "2 playlists are named \"Twice\"; choose one of:\n"
                 "  2:1  Twice\n  2:2  Twice\n");
}

TEST_F(Songs, APlaylistIsFoundByItsFoldersOrItsId) {
  const auto list = [](std::string_view name, std::string_view id, std::string_view parent,
                       int song) {
    return PlaylistText{Property("Name", name) + Property("Playlist Persistent ID", id) +
                            (parent.empty() ? "" : Property("Parent Persistent ID", parent)),
                        {song}};
  };
  const std::string file = Write(
      "folders.xml", LibraryText({{1, Property("Name", "one")},
                                  {2, Property("Name", "two")},
                                  {3, Property("Name", "three")}},
                                 {list("A", "AAA1", "", 1), list("Mix", "AAA2", "AAA1", 1),
                                  list("B", "AAA3", "AAA1", 2), list("Mix", "AAA4", "AAA3", 2),
                                  list("a/b", "AAA5", "", 3), list("Own", "AAA6", "AAA6", 3)}));
  const auto run = [&](const std::string& name) { return Run({"--library", file, "songs", name}); };
  EXPECT_THAT(run("A/Mix").output, HasSubstr("one"));
  EXPECT_THAT(run("A/B/Mix").output, HasSubstr("two"));
  EXPECT_THAT(run("B/Mix").output, HasSubstr("two"));
  EXPECT_THAT(run("b/MIX").output, HasSubstr("two"));
  EXPECT_THAT(run("a/b").output, HasSubstr("three")) << "a name goes before a path";
  EXPECT_THAT(run("id:AAA2").output, HasSubstr("one"));
  EXPECT_THAT(run("id:aaa4").output, HasSubstr("two"));
  EXPECT_EQ(run("Own/Own/Own").exitCode, 1) << "a folder within itself";
  EXPECT_EQ(run("B/A/Mix").exitCode, 1);
  EXPECT_THAT(run("id:").errors, HasSubstr("no playlist with the ID \"\""));
  EXPECT_EQ(run("Mix").errors,
            "tavrel: 2 playlists are named \"Mix\"; choose one of:\n"
            "  id:AAA2  A/Mix\n  id:AAA4  A/B/Mix\n");
  EXPECT_THAT(run("X/mox").errors, testing::EndsWith("  id:AAA2  A/Mix\n  id:AAA4  A/B/Mix\n"));
  EXPECT_THAT(run("mox").errors,
              testing::EndsWith("do you mean:\n  id:AAA2  A/Mix\n  id:AAA4  A/B/Mix\n"));
}

TEST_F(Songs, FoldersWithoutEndAreNamedAsFarAsALineHasRoom) {
  std::vector<PlaylistText> lists;
  std::string parent;
  const auto add = [&](const std::string& name) {
    const std::string id = "A" + std::to_string(lists.size());
    lists.push_back({Property("Name", name) + Property("Playlist Persistent ID", id) +
                         Property("Parent Persistent ID", parent),
                     {}});
    return id;
  };
  for (int i = 0; i < 1000; ++i) parent = add("folder" + std::to_string(i));
  add("Mix");
  parent.clear();
  add("Mix");
  const std::string file = Write("deep.xml", LibraryText({}, lists));
  const std::vector<std::string> lines = Lines(Run({"-l", file, "songs", "Mix"}).errors);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_THAT(lines[1], AllOf(testing::EndsWith("/folder998/folder999/Mix"),
                              testing::SizeIs(testing::Lt(300u))));
  EXPECT_EQ(lines[2], "  id:A1001  Mix");
  const std::string path = lines[1].substr(lines[1].find("folder"));
  EXPECT_EQ(Run({"-l", file, "songs", path}).errors, "tavrel: the playlist is empty\n")
      << "and what is named is taken";
}

TEST_F(Songs, AnUnknownNameSuggestsTheNearest) {
  ExpectNotFound("Evning", "there is no playlist named \"Evning\"; do you mean:\n  2:0  Evening\n");
  ExpectNotFound("music",
                 "there is no playlist named \"music\"; do you mean:\n  2:4  Morning Music\n");
  ExpectNotFound("Gymnopédies", "there is no playlist named \"Gymnopédies\"\n  See tavrel -l " +
                                    file_ + " playlists, or tavrel -l " + file_ +
                                    " search Gymnopédies.\n");
  ExpectNotFound(file_,
                 "there is no playlist named \"" + file_ + "\"\n  See tavrel -l " + file_ + ".\n");
  ExpectNotFound("id:F00", "there is no playlist with the ID \"F00\"\n  tavrel -l " + file_ +
                               " playlists --json shows the IDs.\n");
}

TEST_F(Songs, NamesInMessagesAreHarmless) {
  const std::string file =
      Write("odd.xml", LibraryText({}, {{Property("Name", "Even\x1b[31ming\n2:9  Trap"), {}}}));
  const Outcome outcome = Run({"--library", file, "songs", "ing\x1b"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.errors, AllOf(HasSubstr("\n  2:0  Even[31ming 2:9  Trap\n"),
                                    HasSubstr("named \"ing\""), Not(HasSubstr("\x1b"))));
}

TEST_F(Songs, ABadPlaceSaysWhichThereAre) {
  ExpectNotFound("2:7", "there is no playlist 2:7: group 2 has positions 0 to 6\n");
  ExpectNotFound("1:0", "there is no playlist 1:0: group 1 has no playlists\n");
  ExpectNotFound("3:0", "there is no group 3: groups are 0 (library), 1 (Genius) and 2 (other)\n");
}

TEST_F(Songs, WhatOnlyLooksLikeAPlaceIsAName) {
  for (const std::string name :
       {"2:", ":0", "2:x", "2:0x", "2x:0", "-1:0", "2:-1", "99999999999:0", "2: 0", "+2:0"}) {
    EXPECT_THAT(Run({"--library", file_, "songs", "--", name}).errors,
                HasSubstr("there is no playlist named \"" + name))
        << name;
  }
  EXPECT_THAT(List("2:99999999999").errors, HasSubstr("no playlist named"));
  EXPECT_THAT(List("2:").errors, HasSubstr("no playlist named"));
}

TEST_F(Songs, NothingToListIsSaidAndEndsWithOne) {
  const Outcome outcome = List("Nothing");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errors, "tavrel: the playlist is empty\n");
  const Outcome json = Run({"--library", file_, "songs", "Nothing", "--json"});
  EXPECT_EQ(json.exitCode, 1);
  EXPECT_EQ(json.output, "[]\n");
  EXPECT_EQ(json.errors, outcome.errors);
  const Outcome all = Run({"--library", Write("none.xml", LibraryText({})), "songs", "--all"});
  EXPECT_EQ(all.exitCode, 1);
  EXPECT_EQ(all.errors, "tavrel: the library has no songs\n");
}

TEST_F(Songs, ALineBreakInATextIsOneBlank) {
  const std::string file =
      Write("break.xml", LibraryText({{1, Property("Name", "Part one,\r\n\t\t\tpart two")}}));
  EXPECT_THAT(Lines(Run({"--library", file, "songs", "--all"}).output),
              ElementsAre("#  Name", "0  Part one, part two"));
}

TEST_F(Songs, AVeryLongNameIsNoTrouble) {
  const std::string name(1 << 20, 'x');
  const std::string file = Write(
      "long.xml", LibraryText({{1, Property("Name", name)}}, {{Property("Name", name), {1}}}));
  EXPECT_THAT(Run({"--library", file, "songs", "xxxx"}).errors,
              HasSubstr("there is no playlist named \"xxxx\"\n"));
  EXPECT_THAT(Run({"--library", file, "songs", std::string(100000, 'y')}).errors,
              HasSubstr("there is no playlist named \"yyy"));
  EXPECT_EQ(Run({"--library", file, "songs", "2:0"}).exitCode, 0);
  Command narrow;
  narrow.output = Stream::Terminal;
  const Outcome outcome = Run({"--library", file, "songs", "2:0"}, narrow);
  EXPECT_THAT(outcome.output, HasSubstr("xxx…"));
}

}  // namespace
}  // namespace tavrel::test
