#include "host/page/Tallies.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <map>
#include <numeric>
#include <span>

#include "host/output/Format.h"
#include "host/page/Html.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kMostBars = 10;
constexpr std::int64_t kSecondsAnHour = 3600;
constexpr std::int64_t kLongest = INT32_MAX / 1000;  // that a song counts for, in seconds
constexpr std::int64_t kEarliestYear = 1860;  // of a recording; earlier ones are wrong or a score's
constexpr std::size_t kMostYears = 40;

std::string FilterAddress(std::string_view name, std::string_view value) {
  return "#songs?" + std::string(name) + "=" + InAddress(value);
}

// For each text of the column the sum of what its songs weigh; the empty text not counted.
template <typename Weight>
std::vector<std::int64_t> Sums(const TextColumn& column, Weight weight) {
  std::vector<std::int64_t> sums(column.TextCount(), 0);
  for (std::size_t song = 0; song < column.Numbers().size(); ++song) {
    sums[static_cast<std::size_t>(column.Numbers()[song])] += weight(song);
  }
  sums[0] = 0;
  return sums;
}

std::vector<std::size_t> Largest(const std::vector<std::int64_t>& sums) {
  std::vector<std::size_t> order(sums.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto count = std::min(kMostBars, order.size());
  std::partial_sort(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(count), order.end(),
                    [&sums](std::size_t left, std::size_t right) {
                      return sums[left] != sums[right] ? sums[left] > sums[right] : left < right;
                    });
  order.resize(count);
  order.erase(std::remove_if(order.begin(), order.end(),
                             [&sums](std::size_t text) { return sums[text] <= 0; }),
              order.end());
  return order;
}

std::vector<PlotEntry> Tallied(std::string_view name, const TextColumn& column,
                               const std::vector<std::int64_t>& sums) {
  std::vector<PlotEntry> entries;
  for (const std::size_t text : Largest(sums)) {
    entries.push_back({std::string(column.Text(text)), FilterAddress(name, column.Text(text)),
                       sums[text], Grouped(sums[text])});
  }
  return entries;
}

std::int64_t CountWithout(const PageColumn& column) {
  return std::count(column.numbers.begin(), column.numbers.end(), 0);
}

}  // namespace

std::vector<PlotEntry> SongsPerGenre(const PageContents& contents) {
  const TextColumn& genres = contents.Of(Field::Genre).texts;
  return Tallied("genre", genres, Sums(genres, [](std::size_t) { return 1; }));
}

std::vector<PlotEntry> HoursPerArtist(const PageContents& contents, const Words& words) {
  const TextColumn& artists = contents.Of(Field::Artist).texts;
  const std::span<const std::int64_t> seconds = contents.Of(Field::Seconds).numbers;
  std::vector<PlotEntry> entries =
      Tallied("artist", artists, Sums(artists, [&seconds](std::size_t song) {
                return std::clamp<std::int64_t>(seconds[song] - 1, 0, kLongest);
              }));
  for (PlotEntry& entry : entries) {
    const std::int64_t hours = entry.size / kSecondsAnHour;
    const std::int64_t minutes = entry.size % kSecondsAnHour / 60;
    entry.value = hours == 0 ? words.Of("minutes.short", {{"n", Grouped(minutes)}})
                             : words.Of("hours.short",
                                        {{"n", Grouped(hours)}, {"m", std::to_string(minutes)}});
  }
  return entries;
}

std::vector<PlotEntry> SongsPerDecade(const PageContents& contents, const Words& words) {
  std::map<std::int64_t, std::int64_t> decades;
  for (const std::int64_t stored : contents.Of(Field::Year).numbers) {
    const std::int64_t year = stored - 1;
    if (year >= kEarliestYear && year < 2200) ++decades[year / 10 * 10];
  }
  if (decades.empty()) return {};
  std::vector<PlotEntry> entries;
  for (std::int64_t decade = decades.begin()->first; decade <= decades.rbegin()->first;
       decade += 10) {
    const std::int64_t songs = decades[decade];
    const std::string name = std::to_string(decade);
    entries.push_back({words.Of("decade", {{"n", name}}),
                       songs == 0 ? "" : FilterAddress("decade", name), songs,
                       songs == 0 ? "" : Grouped(songs)});
  }
  return entries;
}

std::vector<PlotEntry> SongsPerRating(const PageContents& contents, const Words& words) {
  std::array<std::int64_t, 6> songs{};
  for (const std::int64_t stored : contents.Of(Field::Rating).numbers) {
    const std::int64_t stars = std::clamp<std::int64_t>(stored - 1, 0, 100) / 20;
    ++songs.at(static_cast<std::size_t>(stars));
  }
  if (songs[0] == static_cast<std::int64_t>(contents.songs)) return {};
  std::vector<PlotEntry> entries;
  for (std::size_t stars = 5; stars >= 1; --stars) {
    std::string label;
    for (std::size_t i = 0; i < stars; ++i) label += "★";
    entries.push_back({label,
                       songs.at(stars) == 0 ? "" : FilterAddress("rating", std::to_string(stars)),
                       songs.at(stars), Grouped(songs.at(stars))});
  }
  // Without a bar, which would dwarf the others.
  entries.push_back({words.Of("rating.none"), FilterAddress("rating", "0"), 0, Grouped(songs[0])});
  return entries;
}

std::vector<PlotEntry> SongsPerPlays(const PageContents& contents, const Words& words) {
  struct Range {
    std::int64_t least;
    std::int64_t most;
  };
  constexpr std::array kRanges{Range{0, 0},   Range{1, 1},   Range{2, 5},    Range{6, 10},
                               Range{11, 20}, Range{21, 50}, Range{51, 100}, Range{101, INT64_MAX}};
  std::array<std::int64_t, kRanges.size()> songs{};
  for (const std::int64_t stored : contents.Of(Field::Plays).numbers) {
    const std::int64_t plays = std::max<std::int64_t>(stored - 1, 0);
    const auto range = std::find_if(kRanges.begin(), kRanges.end(),
                                    [plays](const Range& one) { return plays <= one.most; });
    ++songs.at(static_cast<std::size_t>(range - kRanges.begin()));
  }
  std::size_t end = kRanges.size();
  while (end > 1 && songs.at(end - 1) == 0) --end;
  std::vector<PlotEntry> entries;
  if (end == 1) return entries;
  for (std::size_t i = 0; i < end; ++i) {
    const std::string least = std::to_string(kRanges.at(i).least);
    const bool isOne = kRanges.at(i).least == kRanges.at(i).most;
    const bool isLast = i + 1 == kRanges.size();
    const std::string value =
        isOne ? least : least + "-" + (isLast ? "" : std::to_string(kRanges.at(i).most));
    const std::string label = i == 0   ? words.Of("plays.never")
                              : isOne  ? least
                              : isLast ? least + "+"
                                       : least + "–" + std::to_string(kRanges.at(i).most);
    entries.push_back({label, songs.at(i) == 0 ? "" : FilterAddress("plays", value), songs.at(i),
                       Grouped(songs.at(i))});
  }
  return entries;
}

std::vector<PlotYear> AddedPerMonth(const PageContents& contents) {
  std::map<int, std::array<std::int64_t, 12>> years;
  for (const std::int64_t stored : contents.Of(Field::Added).numbers) {
    if (stored == 0) continue;
    const std::chrono::year_month_day day{
        std::chrono::sys_days(std::chrono::days(static_cast<int>(stored - 1)))};
    ++years[static_cast<int>(day.year())].at(static_cast<unsigned>(day.month()) - 1);
  }
  std::vector<PlotYear> plotted;
  if (years.empty()) return plotted;
  const int last = years.rbegin()->first;
  const int first = std::max(years.begin()->first, last - static_cast<int>(kMostYears) + 1);
  for (int number = first; number <= last; ++number) {
    const std::string label = std::to_string(number);
    PlotYear year{label, FilterAddress("added", label), {}};
    std::copy(years[number].begin(), years[number].end(), std::begin(year.months));
    plotted.push_back(year);
  }
  return plotted;
}

std::vector<PlotEntry> Missing(const PageContents& contents, std::size_t albumsWithoutCover,
                               const Words& words) {
  std::vector<PlotEntry> entries;
  for (const Field field : {Field::Artist, Field::Album, Field::Genre, Field::Year}) {
    const std::string name(FactsOf(field).name);
    const std::int64_t songs = CountWithout(contents.Of(field));
    if (songs == 0) continue;
    entries.push_back(
        {words.Of("missing." + name), FilterAddress("without", name), songs, Grouped(songs)});
  }
  if (albumsWithoutCover > 0) {
    const auto albums = static_cast<std::int64_t>(albumsWithoutCover);
    entries.push_back({words.Of("missing.cover"), "", albums, Grouped(albums)});
  }
  const TextColumn& states = contents.Of(Field::Status).texts;
  const std::vector<std::int64_t> counts = Sums(states, [](std::size_t) { return 1; });
  for (std::size_t state = 0; state < counts.size(); ++state) {
    if (states.Text(state) != "missing" || counts[state] == 0) continue;
    entries.push_back({words.Of("missing.file"), FilterAddress("status", "missing"), counts[state],
                       Grouped(counts[state])});
  }
  return entries;
}

}  // namespace tavrel::host
