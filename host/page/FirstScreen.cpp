#include "host/page/FirstScreen.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <tuple>

#include "host/output/Format.h"
#include "host/page/Html.h"
#include "host/page/Plots.h"
#include "host/page/Tallies.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kTopAlbums = 12;
constexpr std::size_t kLongestShown = 120;  // in characters
constexpr std::uint32_t kHues = 8;          // that the style knows

// The same for the same title, in the page's scripts, too: the sum of its bytes.
std::uint32_t HueOf(std::string_view title) {
  std::uint32_t sum = 0;
  for (const char letter : title) sum += static_cast<unsigned char>(letter);
  return sum % kHues;
}

std::string Figure(const Words& words, std::string_view key, std::int64_t number,
                   const std::string& shown) {
  return fmt::format("<div><dt>{}</dt><dd>{}</dd></div>\n",
                     Escaped(words.Of(std::string(key) + (number == 1 ? ".one" : ".other"))),
                     Escaped(shown));
}

std::string Figure(const Words& words, std::string_view key, std::int64_t number) {
  return Figure(words, key, number, Grouped(number));
}

std::int64_t SizeOf(std::size_t size) {
  return static_cast<std::int64_t>(size);
}

std::int64_t FilesFound(const TextColumn& states) {
  const auto isFound = [&states](std::int64_t number) {
    const std::string_view state = states.Text(static_cast<std::size_t>(number));
    return state == "found" || state == "respelled";
  };
  return std::count_if(states.Numbers().begin(), states.Numbers().end(), isFound);
}

}  // namespace

std::vector<std::size_t> TopAlbums(const PageContents& contents) {
  std::vector<std::size_t> order(contents.albums.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto count = std::min(kTopAlbums, order.size());
  std::partial_sort(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(count), order.end(),
                    [&contents](std::size_t left, std::size_t right) {
                      const PageAlbum& one = contents.albums[left];
                      const PageAlbum& two = contents.albums[right];
                      return std::tie(two.plays, two.songs, left) <
                             std::tie(one.plays, one.songs, right);
                    });
  order.resize(count);
  return order;
}

std::string Figures(const PageContents& contents, const Words& words) {
  constexpr std::int64_t kMinuteMs = 60'000;
  constexpr std::int64_t kHourMs = 60 * kMinuteMs;
  std::string html = Figure(words, "figure.songs", SizeOf(contents.songs));
  html += contents.time < kHourMs ? Figure(words, "figure.minutes", contents.time / kMinuteMs)
                                  : Figure(words, "figure.hours", contents.time / kHourMs);
  html += Figure(words, "figure.albums", SizeOf(contents.albums.size()));
  html += Figure(words, "figure.artists", SizeOf(contents.Of(Field::Artist).texts.TextCount() - 1));
  const auto lists = std::count_if(contents.playlists.begin(), contents.playlists.end(),
                                   [](const PagePlaylist& list) { return list.type != "folder"; });
  html += Figure(words, "figure.playlists", lists);
  const std::int64_t found = FilesFound(contents.Of(Field::Status).texts);
  if (found > 0) html += Figure(words, "figure.found", found);
  return html;
}

std::string AlbumList(const PageContents& contents, const std::vector<std::size_t>& albums,
                      const std::vector<std::string>& covers) {
  std::string html;
  for (std::size_t i = 0; i < albums.size(); ++i) {
    const PageAlbum& album = contents.albums[albums[i]];
    const std::string cover =
        i < covers.size() && !covers[i].empty()
            ? fmt::format("<img class=\"cover\" src=\"{}\" alt=\"\" width=\"240\" height=\"240\">",
                          covers[i])
            : fmt::format("<span class=\"cover hue{}\" aria-hidden=\"true\">{}</span>",
                          HueOf(album.title), Escaped(Initial(album.title)));
    html += fmt::format(
        "<li><a class=\"album\" href=\"#songs?album={}&amp;by={}\">{}<bdi class=\"title\">{}</bdi>"
        "<bdi class=\"artist\">{}</bdi></a></li>\n",
        InAddress(album.title), InAddress(album.artist), cover,
        EscapedStart(album.title, kLongestShown), EscapedStart(album.artist, kLongestShown));
  }
  return html;
}

std::string AllPlots(const PageContents& contents, std::size_t albumsWithoutCover,
                     const Words& words) {
  const std::vector<PlotYear> years = AddedPerMonth(contents);
  const std::string span = years.empty() ? "" : years.front().label + "–" + years.back().label;
  return Bars("genres", words.Of("plot.genres"), SongsPerGenre(contents)) +
         Bars("artists", words.Of("plot.artists"), HoursPerArtist(contents, words)) +
         UprightBars("decades", words.Of("plot.decades"), SongsPerDecade(contents, words)) +
         UprightBars("plays", words.Of("plot.plays"), SongsPerPlays(contents, words)) +
         Bars("ratings", words.Of("plot.ratings"), SongsPerRating(contents, words)) +
         Bars("missing", words.Of("plot.missing"), Missing(contents, albumsWithoutCover, words)) +
         Curve("added", words.Of("plot.added"), words.Of("plot.added.summary", {{"years", span}}),
               years);
}

}  // namespace tavrel::host
