#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "host/output/Table.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

using testing::ElementsAre;

constexpr Terminal kUnlimited{0, false};

Table Songs() {
  Table table({{.title = "#", .align = Align::Right},
               {.title = "Name", .weight = 3, .cut = Cut::Middle},
               {.title = "Artist", .weight = 2, .rank = 1},
               {.title = "Plays", .align = Align::Right, .rank = 2}});
  for (const std::string text :
       {"Nimrod", "Symphonie fantastique: Songe d'une nuit du sabbat",
        "交響曲第九番 ニ短調 作品百二十五「合唱付き」", "Slavonic\tDances", ""}) {
    table.Add(7);
    table.Add(text);
    table.Add("Antoni\u0301n Dvor\u030Ca\u0301k");
    table.Add(12345);
  }
  return table;
}

TEST(Table, WithoutALimitNothingIsCut) {
  Table table({{.title = "Name", .weight = 1}, {.title = "Time", .align = Align::Right}});
  table.Add(std::string(500, 'x'));
  table.Add("4:05");
  EXPECT_THAT(table.Lines(kUnlimited), ElementsAre("Name" + std::string(496, ' ') + "  Time",
                                                   std::string(500, 'x') + "  4:05"));
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
  Table table({{.title = "Name"}, {.title = "Time"}});
  for (const char* name : {"Nimrod", "交響曲", "Dvor\u030Ca\u0301k"}) {
    table.Add(name);
    table.Add("x");
  }
  EXPECT_THAT(table.Lines(kUnlimited),
              ElementsAre("Name    Time", "Nimrod  x", "交響曲  x", "Dvor\u030Ca\u0301k  x"));
}

TEST(Table, ACutTextEndsInAnEllipsis) {
  Table table({{.title = "N", .weight = 1}, {.title = "T"}});
  table.Add("Slavonic Dances");
  table.Add("1");
  table.Add("交響曲第九番");
  table.Add("2");
  EXPECT_THAT(table.Lines({13, false}),
              ElementsAre("N           T", "Slavonic …  1", "交響曲第…   2"));
}

TEST(Table, ATextMayBeCutInTheMiddle) {
  Table table({{.title = "N", .weight = 1, .cut = Cut::Middle}});
  table.Add("Brandenburg Concerto No. 3: Allegro");
  table.Add("交響曲第九番合唱付き");
  EXPECT_THAT(table.Lines({16, false}), ElementsAre("N", "Brandenb…Allegro", "交響曲第…唱付き"));
  EXPECT_THAT(table.Lines({1, false}), ElementsAre("N", "…", "…"));
}

TEST(Table, NarrowedColumnsKeepTheirProportions) {
  Table table({{.title = "A", .weight = 3}, {.title = "B", .weight = 2}});
  table.Add(std::string(100, 'a'));
  table.Add(std::string(100, 'b'));
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
  Table table({{.title = "Name"}, {.title = "Genre", .rank = 1}, {.title = "Album"}});
  for (const char* text : {"Nimrod", "", ""}) table.Add(text);
  EXPECT_THAT(table.Lines(kUnlimited), ElementsAre("Name", "Nimrod"));
}

TEST(Table, WithoutAnyTextTheTitlesStay) {
  Table table({{.title = "Name"}, {.title = "Album"}});
  EXPECT_THAT(table.Lines(kUnlimited), ElementsAre("Name  Album"));
  for (const char* text : {"", ""}) table.Add(text);
  EXPECT_THAT(table.Lines(kUnlimited), ElementsAre("Name  Album", ""));
}

TEST(Table, LinesDoNotEndInBlanks) {
  for (const std::string& line : Songs().Lines({100, false})) EXPECT_FALSE(line.ends_with(' '));
}

TEST(Table, AMarkedPartIsStyledAsFarAsItIsShown) {
  Table table({{.title = "Name", .style = Style::Dim, .weight = 1}});
  table.AddMarked("Slavonic Dances", 4, 8);
  table.AddMarked("Rusalka", 3, 3);
  EXPECT_THAT(table.Lines(kUnlimited), ElementsAre("Name", "Slavonic Dances", "Rusalka"));
  EXPECT_EQ(table.Lines({0, true})[1],
            "\x1b[2mSlav\x1b[0m\x1b[1;33monic\x1b[0m\x1b[2m Dances\x1b[0m");
  EXPECT_EQ(table.Lines({0, true})[2], "\x1b[2mRusalka\x1b[0m");
  EXPECT_EQ(table.Lines({7, true})[1], "\x1b[2mSlav\x1b[0m\x1b[1;33mon\x1b[0m\x1b[2m…\x1b[0m");
  EXPECT_EQ(table.Lines({4, true})[1], "\x1b[2mSla\x1b[0m\x1b[2m…\x1b[0m");
}

TEST(Table, OnlyAStyledTerminalGetsEscapes) {
  Table table({{.title = "Name", .style = Style::Dim}});
  table.Add("Nimrod");
  EXPECT_THAT(table.Lines({80, false}), ElementsAre("Name", "Nimrod"));
  EXPECT_THAT(table.Lines({80, true}), ElementsAre("\x1b[1mName\x1b[0m", "\x1b[2mNimrod\x1b[0m"));
}

TEST(Table, IsEmptyUntilItHasARow) {
  Table table({{.title = "Name"}});
  EXPECT_TRUE(table.IsEmpty());
  table.Add("");
  EXPECT_FALSE(table.IsEmpty());
}

}  // namespace
}  // namespace tavrel::host
