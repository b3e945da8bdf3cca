#include <gmock/gmock.h>

#include "tests/host/Fixture.h"
#include "tests/support/Json.h"

namespace tavrel::test {
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

TEST_F(Search, ShowsEachSongAndOnRequestThePlaylistsThatHoldIt) {
  const Outcome outcome = Find({"dances"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_EQ(outcome.errors, "");
  EXPECT_THAT(Lines(outcome.output), ElementsAre("Name             Artist  Album",
                                                 "Slavonic Dances  Dvor\u030Ca\u0301k  Dances"));
  EXPECT_THAT(Lines(Find({"dances", "--lists"}).output),
              ElementsAre("Name             Artist  Album   Lists",
                          "Slavonic Dances  Dvor\u030Ca\u0301k  Dances  Evening, Morning"));
}

TEST_F(Search, AccentsAndCaseDoNotCount) {
  for (const char* term : {"dvo\u0159\u00E1k", "DVOR\u030CA\u0301K", "dvorak", "d\u00F3rak"}) {
    const bool isOther = std::string_view(term) == "d\u00F3rak";
    const std::vector<std::string> lines = Lines(Find({term}).output);
    ASSERT_EQ(lines.size(), isOther ? 0u : 4u) << term;
    if (isOther) continue;
    EXPECT_THAT(lines[1], HasSubstr("Slavonic Dances"));
    EXPECT_THAT(lines[2], HasSubstr("Rusalka"));
    EXPECT_THAT(lines[3], HasSubstr("Stray song"));
  }
}

TEST_F(Search, EveryWordMustBeFoundInAnyOfFiveTexts) {
  EXPECT_EQ(Find({"--count", "dvorak"}).output, "3\n");
  EXPECT_EQ(Find({"--count", "dvorak", "opera"}).output, "2\n");
  EXPECT_EQ(Find({"--count", "dvorak", "opera", "rus"}).output, "1\n");
  EXPECT_EQ(Find({"--count", "dvorak", "smetana"}).output, "0\n");
  EXPECT_EQ(Find({"--count", "song dvorak"}).output, "0\n") << "no text reaches into the next";
  EXPECT_EQ(Find({"--count", "songdvorak"}).output, "0\n");
  EXPECT_EQ(Find({"--count", "stray song"}).output, "1\n");
  file_ = Write("more.xml", LibraryText({{1, Property("Composer", "Holst")},
                                         {2, Property("Album Artist", "Holst")},
                                         {3, Property("Genre", "Holst")}}));
  EXPECT_EQ(Find({"--count", "holst"}).output, "2\n") << "a genre is no place for a word";
}

TEST_F(Search, OptionsNarrowAndAllMustHold) {
  EXPECT_EQ(Find({"--count", "--name", "s"}).output, "3\n");
  EXPECT_EQ(Find({"--count", "--artist", "s"}).output, "1\n");
  EXPECT_EQ(Find({"--count", "--album", "s"}).output, "2\n");
  EXPECT_EQ(Find({"--count", "--name", "rusalka", "--album", "opera"}).output, "1\n");
  EXPECT_EQ(Find({"--count", "--name", "vltava", "--album", "opera"}).output, "0\n");
  EXPECT_EQ(Find({"--count", "s", "--album", "opera"}).output, "2\n");
  file_ = Write("more.xml",
                LibraryText({{1, Number("Year", 1999) + Property("Genre", "Jazz")},
                             {2, Number("Year", 1989) + Property("Composer", "Ji\u0159\u00ED")},
                             {3, Property("Genre", "Acid Jazz")}}));
  EXPECT_EQ(Find({"--count", "--genre", "jazz"}).output, "2\n");
  EXPECT_EQ(Find({"--count", "--composer", "jiri"}).output, "1\n");
  EXPECT_EQ(Find({"--count", "--year", "1999"}).output, "1\n");
  EXPECT_EQ(Find({"--count", "--year", "1980-1999"}).output, "2\n");
  EXPECT_EQ(Find({"--count", "--year", "1980-1999", "--genre", "jazz"}).output, "1\n");
}

TEST_F(Search, ExactIsTheLibrarysOwnRule) {
  EXPECT_EQ(Find({"--exact", "--count", "dvorak"}).output, "0\n");
  EXPECT_EQ(Find({"--exact", "--count", "DVO\u0158\u00C1K"}).output, "3\n");
  EXPECT_EQ(Find({"--exact", "--count", "dvo\u0159\u00E1k", "opera"}).output, "2\n");
  EXPECT_EQ(Find({"--exact", "--count", "--name", "s", "--artist", "smetana"}).output, "0\n");
  EXPECT_EQ(Find({"--exact", "--count", "dvo\u0159\u00E1k", "--genre", "x"}).output, "0\n");
}

TEST_F(Search, ALimitEndsTheSearch) {
  EXPECT_EQ(Lines(Find({"--limit", "1", "dvo\u0159\u00E1k"}).output).size(), 2u);
  EXPECT_EQ(Lines(Find({"--limit", "2", "dvo\u0159\u00E1k"}).output).size(), 3u);
  EXPECT_EQ(Find({"--limit", "2", "--count", "dvo\u0159\u00E1k"}).output, "2\n");
  EXPECT_THAT(Lines(Find({"--limit", "1", "--sort", "name", "dvorak"}).output)[1],
              HasSubstr("Rusalka"));
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
  EXPECT_FALSE(list[1].Has("lists"));
  const test::Json all = test::Json::Parse(Run({"--library", file_, "songs", "--json"}).output);
  EXPECT_EQ(list[1], all[2]) << "a song is the same object everywhere";
  const test::Json held = test::Json::Parse(Find({"--json", "--lists", "dvorak"}).output);
  EXPECT_EQ(held[0]["lists"], test::Json::Parse(R"(["Evening","Morning"])"));
  EXPECT_TRUE(held[2]["lists"].empty());
}

TEST_F(Search, NothingFoundIsSaidAndEndsWithOne) {
  const Outcome outcome = Find({"zzz"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errors, "tavrel: no song matches \"zzz\"\n");
  EXPECT_EQ(Find({"--name", "zzz", "--artist", "yyy"}).errors,
            "tavrel: no song matches \"zzz\" and \"yyy\"\n");
  const Outcome json = Find({"zzz", "--json"});
  EXPECT_EQ(json.exitCode, 1);
  EXPECT_EQ(json.output, "[]\n");
  const Outcome count = Find({"zzz", "--count"});
  EXPECT_EQ(count.exitCode, 1);
  EXPECT_EQ(count.output, "0\n");
}

TEST_F(Search, ATermThatLacksAnAccentIsToldTheSpellingsThatAreFound) {
  EXPECT_EQ(Find({"--exact", "dvorak"}).errors,
            "tavrel: no song matches \"dvorak\"; accents count. Do you mean:\n"
            "  Dvo\u0159\u00E1k  (3 songs)\n");
  EXPECT_EQ(Find({"--exact", "--album", "ma v"}).errors,
            "tavrel: no song matches \"ma v\"; accents count. Do you mean:\n"
            "  M\u00E1 v  (1 song)\n");
  EXPECT_EQ(Find({"--exact", "--name", "dvorak"}).errors, "tavrel: no song matches \"dvorak\"\n");
  EXPECT_EQ(Find({"--exact", "r\u00FAsalka"}).errors,
            "tavrel: no song matches \"r\u00FAsalka\"; accents count. Do you mean:\n"
            "  Rusalka  (1 song)\n");
}

TEST_F(Search, OnATerminalTheMatchCatchesTheEye) {
  Command terminal;
  terminal.output = Stream::Terminal;
  EXPECT_THAT(Find({"usal"}, terminal).output, HasSubstr("R\x1b[1;33musal\x1b[0mka"));
  EXPECT_THAT(Find({"dvo\u0159"}, terminal).output,
              HasSubstr("\x1b[1;33mDvor\u030C\x1b[0ma\u0301k"));
  EXPECT_THAT(Find({"dvor", "opera"}, terminal).output,
              HasSubstr("\x1b[1;33mDvo\u0159\x1b[0m\u00E1k"));
  EXPECT_THAT(Find({"--exact", "usal"}, terminal).output, HasSubstr("R\x1b[1;33musal\x1b[0mka"));
  EXPECT_THAT(Find({"usal"}).output, Not(HasSubstr("\x1b")));
  terminal.environment["NO_COLOR"] = "1";
  EXPECT_THAT(Find({"usal"}, terminal).output, Not(HasSubstr("\x1b")));
  terminal.environment.erase("NO_COLOR");
  file_ = Write("exact.xml", LibraryText({{1, Property("Name", "Cafe Caf\u00E9")}}));
  EXPECT_THAT(Find({"--exact", "caf\u00E9"}, terminal).output,
              HasSubstr("Cafe \x1b[1;33mCaf\u00E9\x1b[0m"));
}

TEST_F(Search, HarmfulTextsAndTermsAreMadeHarmless) {
  file_ = Write("odd.xml", LibraryText({{1, Property("Name", "Even\x1b[31ming")}}));
  EXPECT_THAT(Find({"ing"}).output, AllOf(HasSubstr("Even[31ming"), Not(HasSubstr("\x1b"))));
  EXPECT_THAT(Find({"x\x1by"}).errors, AllOf(HasSubstr("\"xy\""), Not(HasSubstr("\x1b"))));
  EXPECT_EQ(Find({"\xFF"}).exitCode, 1);
}

TEST_F(Search, WrongUsageEndsWithTwo) {
  const std::vector<std::vector<std::string>> wrong = {{},
                                                       {"x", "--year", "199x"},
                                                       {"x", "--format", "xml"},
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
}  // namespace tavrel::test
