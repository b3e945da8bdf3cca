// tavrel stats: how many songs there are of each artist, year, rating, ...
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <memory>
#include <tuple>

#include "host/commands/Commands.h"
#include "host/commands/ListFormat.h"
#include "host/commands/RecordList.h"
#include "host/library/SongSums.h"
#include "host/output/Failure.h"
#include "host/output/Format.h"
#include "host/output/Table.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

struct StatisticsArguments {
  std::optional<std::string> by;
  std::optional<std::string> top;  // a number, or "all"; none: what suits the list
  FormatOptions format;
};

constexpr std::size_t kUsualTop = 20;    // of texts; numbers are shown all
constexpr std::size_t kLongestBar = 20;  // in columns

constexpr std::array kGroupings{
    Grouping{"artist", Field::Artist, false}, Grouping{"albumArtist", Field::AlbumArtist, false},
    Grouping{"album", Field::Album, false},   Grouping{"composer", Field::Composer, false},
    Grouping{"genre", Field::Genre, false},   Grouping{"year", Field::Year, true},
    Grouping{"decade", Field::Year, true},    Grouping{"rating", Field::Rating, true},
    Grouping{"added", Field::Added, true},    Grouping{"kind", Field::Kind, false},
};

const Grouping& GroupingOf(const std::string& name) {
  const auto known =
      std::find_if(kGroupings.begin(), kGroupings.end(),
                   [&](const Grouping& grouping) { return Fold(grouping.name) == Fold(name); });
  if (known == kGroupings.end()) throw Failure(ExitCode::Usage, "--by: there is no " + Clean(name));
  return *known;
}

std::int64_t NumberOf(const Sum& sum) {
  std::int64_t number = 0;
  std::from_chars(sum.value.data(), sum.value.data() + sum.value.size(), number);
  return number;
}

// Those without a value stand last.
void Sort(std::vector<Sum>& sums, bool byNumber) {
  std::sort(sums.begin(), sums.end(), [byNumber](const Sum& left, const Sum& right) {
    if (left.isNone != right.isNone) return right.isNone;
    if (byNumber) return NumberOf(left) < NumberOf(right);
    return std::tie(right.songs, right.time, left.value, left.artist) <
           std::tie(left.songs, left.time, right.value, right.artist);
  });
}

// 0: all.
std::size_t TopOf(const StatisticsArguments& arguments, const Grouping& grouping) {
  if (!arguments.top) return grouping.isNumber ? 0 : kUsualTop;
  if (*arguments.top == "all") return 0;
  const std::string& text = *arguments.top;
  std::size_t top = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), top);
  if (error != std::errc() || end != text.data() + text.size() || top == 0) {
    throw Failure(ExitCode::Usage, "--top: a number from 1, or all");
  }
  return top;
}

std::string Bar(std::int64_t songs, std::int64_t most) {
  std::string bar;
  const auto length =
      static_cast<std::size_t>(songs * static_cast<std::int64_t>(kLongestBar) / most);
  for (std::size_t i = 0; i < std::max<std::size_t>(length, 1); ++i) bar += "█";
  return bar;
}

void PrintTable(const std::vector<Sum>& sums, const Grouping& grouping, Session& session) {
  const bool isAlbum = grouping.field == Field::Album;
  const bool withBars = session.terminal.width != 0;
  std::int64_t most = 1;
  for (const Sum& sum : sums) most = std::max(most, sum.songs);
  const bool isOwn = grouping.name != "decade";
  std::vector<Column> columns{
      {.title = isOwn ? FactsOf(grouping.field).heading : "Decade", .weight = 3}};
  if (isAlbum) columns.push_back({.title = "Artist", .weight = 2, .rank = 2});
  columns.push_back({.title = "Songs", .align = Align::Right});
  columns.push_back({.title = "Time", .align = Align::Right, .style = Style::Dim, .rank = 3});
  columns.push_back({.title = "Plays", .align = Align::Right, .style = Style::Dim, .rank = 2});
  if (withBars) columns.push_back({.title = "", .rank = 1});
  const Table table(columns, [&](Rows& rows) {
    for (const Sum& sum : sums) {
      rows.Add(sum.isNone ? "(none)" : sum.value);
      if (isAlbum) rows.Add(sum.artist);
      rows.Add(Grouped(sum.songs));
      rows.Add(Clock(sum.time));
      rows.Add(sum.plays == 0 ? std::string() : Grouped(sum.plays));
      if (withBars) rows.Add(Bar(sum.songs, most));
    }
  });
  table.Print(session.terminal, session.output);
}

void PrintRecords(const std::vector<Sum>& sums, const Grouping& grouping,
                  const FormatOptions& format, Session& session) {
  const bool isAlbum = grouping.field == Field::Album;
  std::vector<std::string_view> names{grouping.name, "songs", "seconds", "plays"};
  if (isAlbum) names.insert(names.begin() + 1, "artist");
  RecordList list(names, FormatOf(format, session.options), format.forSpreadsheet, session.output);
  const auto textOrNone = [](const std::string& text) {
    return RecordValue(text.empty() ? std::nullopt : std::optional(text));
  };
  for (const Sum& sum : sums) {
    const bool isNumber = grouping.isNumber && !sum.isNone;
    std::vector<RecordValue> values{isNumber ? RecordValue(NumberOf(sum)) : textOrNone(sum.value)};
    if (isAlbum) values.push_back(textOrNone(sum.artist));
    values.insert(values.end(), {sum.songs, sum.time / 1000, sum.plays});
    list.Add(values);
  }
  list.End();
}

ExitCode ShowStatistics(const StatisticsArguments& arguments, Session& session) {
  const Grouping& grouping = GroupingOf(arguments.by.value_or("artist"));
  const std::size_t top = TopOf(arguments, grouping);
  std::vector<Sum> sums = SumUp(grouping, session.library);
  const bool isCut = top != 0 && top < sums.size();
  Sort(sums, grouping.isNumber && !isCut);
  if (isCut) sums.resize(top);
  if (FormatOf(arguments.format, session.options) != ListFormat::Table) {
    PrintRecords(sums, grouping, arguments.format, session);
  } else if (!sums.empty()) {
    PrintTable(sums, grouping, session);
  }
  if (!sums.empty()) return ExitCode::Done;
  Complain("the library has no songs");
  return ExitCode::Failed;
}

}  // namespace

void DefineStatistics(CommandDefinition program) {
  const auto arguments = std::make_shared<StatisticsArguments>();
  std::vector<std::string> names;
  for (const Grouping& grouping : kGroupings) names.emplace_back(grouping.name);
  CommandDefinition command =
      program.AddCommand("stats", "Count songs and their time by a property");
  command.AddChoiceInAnyCase(
      "--by", arguments->by, names,
      "artist (unless told otherwise), albumArtist, album, composer, genre, year,\n"
      "decade, rating, added or kind",
      "FIELD");
  command.AddText("--top", arguments->top, "N|all", "So many of those with the most songs, or all");
  AddFormatOptions(command, arguments->format, JsonLines::NotOffered);
  command.Makes([arguments] {
    return Task{
        .run = [arguments](Session& session) { return ShowStatistics(*arguments, session); }};
  });
}

}  // namespace tavrel::host
