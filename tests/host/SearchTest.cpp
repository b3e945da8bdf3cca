#include <gmock/gmock.h>

#include "tests/host/Fixture.h"
#include "tests/support/Json.h"

namespace tavrel::tests {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class Search : public HostTest {
 protected:
  Search() {
    file_ = Write("library.xml",
                  LibraryText({{1, Song("Vltava", "Smetana", "M\u00E1 vlast")},
                               {2, Song("Slavonic Dances", "Dvor\u030Ca\u0301k", "Dances")},
                               {3, Song("Rusalka", "Dvo\u0159\u00E1k", "Opera")},
                               {4, Song("Stray song", "Dvo\u0159\u00E1k", "Opera")},
                               {5, ""}},
                              {{Property("Name", "Evening"), {3, 2}},
                               {Property("Name", "Morning"), {1, 2}}}));
  }

  static std::string Song(const std::string& name, const std::string& artist,
                          const std::string& album) {
    return Property("Name", name) + Property("Artist", artist) + Property("Album", album);
  }

  Outcome Find(std::vector<std::string> arguments, Command command = {}) const {
    arguments.insert(arguments.begin(), {"--library", file_, "search"});
    return Run(arguments, command);
  }

  std::string file_;
};

TEST_F(Search, ShowsEachSongWithThePlaylistThatHoldsItFirst) {
  const Outcome outcome = Find({"dances"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_EQ(outcome.errors, "");
  EXPECT_THAT(Lines(outcome.output),
              ElementsAre("Name             Artist  Album   Playlist  At   #",
                          "Slavonic Dances  Dvor\u030Ca\u0301k  Dances  Evening   2:0  1"));
}

TEST_F(Search, FindsBothSpellingsOfAnAccentByEither) {
  for (const char* term : {"dvo\u0159\u00E1k", "DVOR\u030CA\u0301K"}) {
    const std::vector<std::string> lines = Lines(Find({term}).output);
    ASSERT_EQ(lines.size(), 4u) << term;
    EXPECT_THAT(lines[1], HasSubstr("Slavonic Dances"));
    EXPECT_THAT(lines[2], HasSubstr("Rusalka"));
    EXPECT_THAT(lines[3], AllOf(HasSubstr("Stray song"), Not(HasSubstr("2:")))) << "no playlist";
  }
}

TEST_F(Search, LooksInNameArtistAndAlbumOrInThoseThatAreNamed) {
  EXPECT_EQ(Lines(Find({"vl"}).output).size(), 2u);
  EXPECT_EQ(Find({"--count", "s"}).output, "4\n");
  EXPECT_EQ(Find({"--count", "--name", "s"}).output, "3\n");
  EXPECT_EQ(Find({"--count", "--artist", "s"}).output, "1\n");
  EXPECT_EQ(Find({"--count", "--album", "s"}).output, "2\n");
  EXPECT_EQ(Find({"--count", "--name", "vltava", "--album", "opera"}).output, "3\n")
      << "they are alternatives";
}

TEST_F(Search, ALimitEndsTheSearch) {
  EXPECT_EQ(Lines(Find({"--limit", "1", "dvo\u0159\u00E1k"}).output).size(), 2u);
  EXPECT_EQ(Lines(Find({"--limit", "2", "dvo\u0159\u00E1k"}).output).size(), 3u);
  EXPECT_EQ(Find({"--limit", "2", "--count", "dvo\u0159\u00E1k"}).output, "2\n");
  EXPECT_EQ(Find({"--limit", "9", "--count", "dvo\u0159\u00E1k"}).output, "3\n");
}

TEST_F(Search, ColumnsThatNothingFillsAreLeftOut) {
  const Outcome outcome = Find({"stray"});
  EXPECT_THAT(Lines(outcome.output),
              ElementsAre("Name        Artist  Album", "Stray song  Dvo\u0159\u00E1k  Opera"));
}

TEST_F(Search, GivesJson) {
  const Outcome outcome = Find({"--json", "dvo\u0159\u00E1k"});
  EXPECT_EQ(outcome.exitCode, 0);
  const test::Json list = test::Json::Parse(outcome.output);
  ASSERT_EQ(list.size(), 3u);
  EXPECT_EQ(list[1]["name"], "Rusalka");
  EXPECT_EQ(list[1]["artist"], "Dvo\u0159\u00E1k");
  EXPECT_EQ(list[1]["playlist"]["group"], 2);
  EXPECT_EQ(list[1]["playlist"]["index"], 0);
  EXPECT_EQ(list[1]["playlist"]["name"], "Evening");
  EXPECT_EQ(list[1]["playlist"]["position"], 0);
  EXPECT_TRUE(list[2]["playlist"].IsNull());
}

TEST_F(Search, NothingFoundIsSaidAndEndsWithOne) {
  const Outcome outcome = Find({"zzz"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errors, "tavrel: no song matches \"zzz\"\n");
  EXPECT_EQ(Find({"--name", "zzz", "--artist", "yyy"}).errors,
            "tavrel: no song matches \"zzz\" or \"yyy\"\n");
  const Outcome json = Find({"zzz", "--json"});
  EXPECT_EQ(json.exitCode, 1);
  EXPECT_EQ(json.output, "[]\n");
  const Outcome count = Find({"zzz", "--count"});
  EXPECT_EQ(count.exitCode, 1);
  EXPECT_EQ(count.output, "0\n");
}

TEST_F(Search, ATermThatLacksAnAccentIsToldTheSpellingsThatAreFound) {
  EXPECT_EQ(Find({"dvorak"}).errors,
            "tavrel: no song matches \"dvorak\"; accents count. Do you mean:\n"
            "  Dvo\u0159\u00E1k  (3 songs)\n");
  EXPECT_EQ(Find({"--album", "ma v"}).errors,
            "tavrel: no song matches \"ma v\"; accents count. Do you mean:\n"
            "  M\u00E1 v  (1 song)\n");
  EXPECT_EQ(Find({"--name", "dvorak"}).errors, "tavrel: no song matches \"dvorak\"\n");
  EXPECT_EQ(Find({"r\u00FAsalka"}).errors,
            "tavrel: no song matches \"r\u00FAsalka\"; accents count. Do you mean:\n"
            "  Rusalka  (1 song)\n");
}

TEST_F(Search, OnATerminalTheMatchCatchesTheEye) {
  Command terminal;
  terminal.output = Stream::Terminal;
  EXPECT_THAT(Find({"usal"}, terminal).output, HasSubstr("R\x1b[1;33musal\x1b[0mka"));
  EXPECT_THAT(Find({"dvo\u0159"}, terminal).output,
              HasSubstr("\x1b[1;33mDvor\u030C\x1b[0ma\u0301k"));
  EXPECT_THAT(Find({"usal"}).output, Not(HasSubstr("\x1b")));
  terminal.environment["NO_COLOR"] = "1";
  EXPECT_THAT(Find({"usal"}, terminal).output, Not(HasSubstr("\x1b")));
}

TEST_F(Search, HarmfulTextsAndTermsAreMadeHarmless) {
  file_ = Write("odd.xml", LibraryText({{1, Property("Name", "Even\x1b[31ming")}}));
  EXPECT_THAT(Find({"ing"}).output, AllOf(HasSubstr("Even[31ming"), Not(HasSubstr("\x1b"))));
  EXPECT_THAT(Find({"x\x1by"}).errors, AllOf(HasSubstr("\"xy\""), Not(HasSubstr("\x1b"))));
  EXPECT_EQ(Find({"\xFF"}).exitCode, 1);
}

TEST_F(Search, WrongUsageEndsWithTwo) {
  const std::vector<std::vector<std::string>> wrong = {{},
                                                       {"x", "--name", "y"},
                                                       {""},
                                                       {"--album", ""},
                                                       {"x", "--limit", "0"},
                                                       {"x", "--limit", "a"}};
  for (const std::vector<std::string>& arguments : wrong) {
    EXPECT_EQ(Find(arguments).exitCode, 2);
  }
}

TEST_F(Search, AVeryLongNameIsNoTrouble) {
  const std::string name(1 << 20, 'x');
  file_ = Write("long.xml", LibraryText({{1, Property("Name", name + "y")}}));
  Command terminal;
  terminal.output = Stream::Terminal;
  EXPECT_EQ(Find({"xxxy"}, terminal).exitCode, 0);
  EXPECT_THAT(Find({"xxx"}, terminal).output, HasSubstr("\x1b[1;33mxxx\x1b[0mxx"));
}

}  // namespace
}  // namespace tavrel::tests
