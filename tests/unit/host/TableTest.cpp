#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "host/output/Table.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

using testing::ElementsAre;

constexpr Terminal kUnlimited{0, false};

Table TableOf(std::vector<Column> columns, std::vector<std::string> cells) {
  return {std::move(columns), [cells = std::move(cells)](Rows& rows) {
            for (const std::string& cell : cells) rows.Add(cell);
          }};
}

Table Songs() {
  return {{{.title = "#", .align = Align::Right},
           {.title = "Name", .weight = 3, .cut = Cut::Middle},
           {.title = "Artist", .weight = 2, .rank = 1},
           {.title = "Plays", .align = Align::Right, .rank = 2}},
          [](Rows& rows) {
            for (const std::string text :
                 {"Nimrod", "Symphonie fantastique: Songe d'une nuit du sabbat",
                  "交響曲第九番 ニ短調 作品百二十五「合唱付き」", "Slavonic\tDances", ""}) {
              rows.Add(7);
              rows.Add(text);
              rows.Add("Antoni\u0301n Dvor\u030Ca\u0301k");
              rows.Add(12345);
            }
          }};
}

TEST(Table, WithoutALimitNothingIsCut) {
  const std::string name(200, 'x');
  const Table table = TableOf(
      {{.title = "Name", .weight = 1}, {.title = "Time", .align = Align::Right}}, {name, "4:05"});
  EXPECT_THAT(table.Lines(kUnlimited),
              ElementsAre("Name" + std::string(196, ' ') + "  Time", name + "  4:05"));
}

TEST(Table, WithoutALimitAVeryWideTextIsNotWhatOthersAreLinedUpWith) {
  const std::string widest(kWidestAligned, 'w');
  const std::string wider(kWidestAligned + 1, 'w');
  const Table table = TableOf({{.title = "Name"}, {.title = "Time"}},
                              {"Nimrod", "4:05", wider, "3:00", "Vltava", "11:30"});
  EXPECT_THAT(table.Lines(kUnlimited),
              ElementsAre("Name    Time", "Nimrod  4:05", wider + "  3:00", "Vltava  11:30"));
  const Table narrower = TableOf({{.title = "Name"}, {.title = "Time"}}, {"a", "b", widest, "c"});
  EXPECT_EQ(narrower.Lines(kUnlimited)[1], "a" + std::string(kWidestAligned - 1, ' ') + "  b");
}

TEST(Table, HoldsNoRowsButAsksForThemAgain) {
  int asked = 0;
  std::string text = "short";
  const Table table({{.title = "Name"}}, [&](Rows& rows) {
    ++asked;
    rows.Add(text);
  });
  EXPECT_EQ(asked, 1) << "to be measured";
  text = "other";
  EXPECT_THAT(table.Lines(kUnlimited), ElementsAre("Name", "other"));
  EXPECT_EQ(asked, 2);
}

TEST(Table, NoLineIsWiderThanTheTerminal) {
  const Table table = Songs();
  for (std::size_t width = 10; width < 120; ++width) {
    const std::vector<std::string> lines = table.Lines({width, false});
    EXPECT_EQ(lines.size(), 6u);
    for (const std::string& line : lines) EXPECT_LE(Width(line), width) << line;
  }
}

TEST(Table, AFullTableUsesTheWholeWidth) {
  const Table table = Songs();
  EXPECT_EQ(table.Width({60, false}), 60u);
  for (const std::string& line : table.Lines({60, false}, LineEnd::Padded)) {
    EXPECT_EQ(Width(line), 60u) << line;
  }
}

TEST(Table, ColumnsLineUpBehindWideAndCombiningCharacters) {
  const Table table = TableOf({{.title = "Name"}, {.title = "Time"}},
                              {"Nimrod", "x", "交響曲", "x", "Dvor\u030Ca\u0301k", "x"});
  EXPECT_THAT(table.Lines(kUnlimited),
              ElementsAre("Name    Time", "Nimrod  x", "交響曲  x", "Dvor\u030Ca\u0301k  x"));
}

TEST(Table, ACutTextEndsInAnEllipsis) {
  const Table table = TableOf({{.title = "N", .weight = 1}, {.title = "T"}},
                              {"Slavonic Dances", "1", "交響曲第九番", "2"});
  EXPECT_THAT(table.Lines({13, false}),
              ElementsAre("N           T", "Slavonic …  1", "交響曲第…   2"));
}

TEST(Table, ATextMayBeCutInTheMiddle) {
  const Table table = TableOf({{.title = "N", .weight = 1, .cut = Cut::Middle}},
                              {"Brandenburg Concerto No. 3: Allegro", "交響曲第九番合唱付き"});
  EXPECT_THAT(table.Lines({16, false}), ElementsAre("N", "Brandenb…Allegro", "交響曲第…唱付き"));
  EXPECT_THAT(table.Lines({1, false}), ElementsAre("N", "…", "…"));
}

TEST(Table, NarrowedColumnsKeepTheirProportions) {
  const Table table = TableOf({{.title = "A", .weight = 3}, {.title = "B", .weight = 2}},
                              {std::string(100, 'a'), std::string(100, 'b')});
  const std::string line = table.Lines({52, false}).back();
  EXPECT_EQ(line.find("  "), std::string(29, 'a').size() + std::string("…").size());
}

TEST(Table, TheHighestRankIsLeftOutFirst) {
  const Table table = Songs();
  EXPECT_EQ(table.Lines({60, false})[0].substr(0, 7), "#  Name");
  EXPECT_NE(table.Lines({60, false})[0].find("Plays"), std::string::npos);
  EXPECT_EQ(table.Lines({48, false})[0].find("Plays"), std::string::npos);
  EXPECT_NE(table.Lines({48, false})[0].find("Artist"), std::string::npos);
  EXPECT_EQ(table.Lines({30, false})[0], "#  Name");
}

TEST(Table, AColumnWithoutTextIsLeftOut) {
  const Table table = TableOf(
      {{.title = "Name"}, {.title = "Genre", .rank = 1}, {.title = "Album"}}, {"Nimrod", "", ""});
  EXPECT_THAT(table.Lines(kUnlimited), ElementsAre("Name", "Nimrod"));
}

TEST(Table, WithoutAnyTextTheTitlesStay) {
  const std::vector<Column> columns{{.title = "Name"}, {.title = "Album"}};
  EXPECT_THAT(TableOf(columns, {}).Lines(kUnlimited), ElementsAre("Name  Album"));
  EXPECT_THAT(TableOf(columns, {"", ""}).Lines(kUnlimited), ElementsAre("Name  Album", ""));
}

TEST(Table, LinesDoNotEndInBlanks) {
  for (const std::string& line : Songs().Lines({100, false})) EXPECT_FALSE(line.ends_with(' '));
}

TEST(Table, AMarkedPartIsStyledAsFarAsItIsShown) {
  const Table table({{.title = "Name", .style = Style::Dim, .weight = 1}}, [](Rows& rows) {
    rows.AddMarked("Slavonic Dances", [](std::string_view) { return TextRange{4, 8}; });
    rows.AddMarked("Rusalka", [](std::string_view) { return std::nullopt; });
  });
  EXPECT_THAT(table.Lines(kUnlimited), ElementsAre("Name", "Slavonic Dances", "Rusalka"));
  EXPECT_EQ(table.Lines({0, true})[1],
            "\x1b[2mSlav\x1b[0m\x1b[1;33monic\x1b[0m\x1b[2m Dances\x1b[0m");
  EXPECT_EQ(table.Lines({0, true})[2], "\x1b[2mRusalka\x1b[0m");
  EXPECT_EQ(table.Lines({7, true})[1], "\x1b[2mSlav\x1b[0m\x1b[1;33mon\x1b[0m\x1b[2m…\x1b[0m");
  EXPECT_EQ(table.Lines({4, true})[1], "\x1b[2mSla\x1b[0m\x1b[2m…\x1b[0m");
}

TEST(Table, OnlyAStyledTerminalGetsEscapes) {
  const Table table = TableOf({{.title = "Name", .style = Style::Dim}}, {"Nimrod"});
  EXPECT_THAT(table.Lines({80, false}), ElementsAre("Name", "Nimrod"));
  EXPECT_THAT(table.Lines({80, true}), ElementsAre("\x1b[1mName\x1b[0m", "\x1b[2mNimrod\x1b[0m"));
}

TEST(Table, IsEmptyUntilItHasARow) {
  EXPECT_TRUE(TableOf({{.title = "Name"}}, {}).IsEmpty());
  EXPECT_FALSE(TableOf({{.title = "Name"}}, {""}).IsEmpty());
}

}  // namespace
}  // namespace tavrel::host
