// tavrel without a subcommand: the library at a glance.
#include <fmt/format.h>

#include <array>

#include "host/commands/Commands.h"
#include "host/library/Invocation.h"
#include "host/library/Playlists.h"
#include "host/library/Statistics.h"
#include "host/output/Format.h"
#include "host/output/Json.h"
#include "host/output/Table.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

using GroupCounts = std::array<std::int32_t, kGroupCount>;

GroupCounts CountPlaylists(const Library& library) {
  GroupCounts counts{};
  for (const Playlist& playlist : ReadPlaylists(library)) {
    if (playlist.isInFile) ++counts[static_cast<std::size_t>(playlist.group)];
  }
  return counts;
}

// ---- On screen: the tables borrow the lists ----

constexpr std::size_t kLeastWidthForTwo = 72;  // narrower terminals show one list below the other
constexpr std::string_view kBetweenLists = "    ";

Table TallyTable(std::string_view title, const std::vector<Tally>& tallies) {
  return {{{.title = title, .weight = 1},
           {.title = "Songs", .align = Align::Right},
           {.title = "Time", .align = Align::Right, .style = Style::Dim}},
          [&tallies](Rows& rows) {
            for (const Tally& tally : tallies) {
              rows.Add(tally.name);
              rows.Add(Grouped(tally.songs));
              rows.Add(Clock(tally.time));
            }
          }};
}

Table AlbumTable(const std::vector<Tally>& albums) {
  return {{{.title = "Album", .weight = 3},
           {.title = "Artist", .weight = 2, .rank = 1},
           {.title = "Songs", .align = Align::Right},
           {.title = "Time", .align = Align::Right, .style = Style::Dim}},
          [&albums](Rows& rows) {
            for (const Tally& album : albums) {
              rows.Add(album.name);
              rows.Add(album.artist);
              rows.Add(Grouped(album.songs));
              rows.Add(Clock(album.time));
            }
          }};
}

Table PlayedTable(const std::vector<PlayedSong>& songs) {
  return {{{.title = "Most played", .weight = 3, .cut = Cut::Middle},
           {.title = "Artist", .weight = 2, .rank = 1},
           {.title = "Plays", .align = Align::Right}},
          [&songs](Rows& rows) {
            for (const PlayedSong& song : songs) {
              rows.Add(song.name.value_or(""));
              rows.Add(song.artist.value_or(""));
              rows.Add(Grouped(song.plays));
            }
          }};
}

void Print(const Table& table, Session& session) {
  if (table.IsEmpty()) return;
  session.output.WriteLine("");
  table.Print(session.terminal, session.output);
}

void PrintSideBySide(const Table& left, const Table& right, Session& session) {
  const Terminal& terminal = session.terminal;
  if (terminal.width < kLeastWidthForTwo || left.IsEmpty() || right.IsEmpty()) {
    Print(left, session);
    Print(right, session);
    return;
  }
  // Each may have half of the width, and the left one also what the right one leaves.
  const std::size_t both = terminal.width - kBetweenLists.size();
  const Terminal rightHalf{both / 2, terminal.styled};
  const Terminal leftHalf{both - right.Width(rightHalf), terminal.styled};
  std::vector<std::string> leftLines = left.Lines(leftHalf, LineEnd::Padded);
  const std::vector<std::string> rightLines = right.Lines(rightHalf);
  leftLines.resize(std::max(leftLines.size(), rightLines.size()),
                   std::string(left.Width(leftHalf), ' '));
  session.output.WriteLine("");
  for (std::size_t i = 0; i < leftLines.size(); ++i) {
    const bool isBoth = i < rightLines.size();
    session.output.Write(leftLines[i]);
    if (isBoth) session.output.Write(kBetweenLists);
    session.output.WriteLine(isBoth ? rightLines[i] : "");
  }
}

// What is neither a film nor a podcast.
std::int64_t MusicOf(const Statistics& statistics) {
  return statistics.songs - statistics.movies - statistics.podcasts;
}

// What the library amounts to, in parts that stay whole where the line has to be folded.
std::vector<std::string> SongSummary(const Statistics& statistics) {
  std::vector<std::string> parts{Counted(MusicOf(statistics), "song") + ","};
  if (statistics.movies > 0) parts.push_back(Counted(statistics.movies, "movie") + ",");
  if (statistics.podcasts > 0)
    parts.push_back(Counted(statistics.podcasts, "podcast episode") + ",");
  parts.push_back(Span(statistics.time));
  return parts;
}

std::vector<std::string> PlaylistSummary(const GroupCounts& groups) {
  std::vector<std::string> parts{{}};
  std::int64_t count = 0;
  for (std::size_t group = 0; group < groups.size(); ++group) {
    count += groups[group];
    parts.push_back(fmt::format("{} {}{}", Grouped(groups[group]),
                                GroupName(static_cast<std::int32_t>(group)),
                                group + 1 == groups.size() ? "" : ","));
  }
  parts.front() = Counted(count, "playlist") + ":";
  return parts;
}

// What to do next; the options that say which library are repeated once.
std::vector<std::string> NextCommands(const Options& options) {
  std::string start = Invocation(options, "");
  start.pop_back();  // its blank
  if (start != "tavrel") {
    return {"Next:",      Clean(start), "and songs,", "search WORD,",
            "playlists,", "stats",      "or --help"};
  }
  return {"Next:",         "tavrel songs,", "tavrel search WORD,", "tavrel playlists,",
          "tavrel stats,", "tavrel --help"};
}

void PrintScreen(const Statistics& statistics, const GroupCounts& groups, Session& session) {
  const Terminal& terminal = session.terminal;
  session.output.WriteLine(terminal.Styled(Style::Bold, Clean(session.libraryPath)));
  for (const auto& summary : {SongSummary(statistics), PlaylistSummary(groups)}) {
    for (const std::string& line : FoldLine(summary, terminal.width)) {
      session.output.WriteLine(line);
    }
  }
  PrintSideBySide(TallyTable("Artist", statistics.artists), TallyTable("Genre", statistics.genres),
                  session);
  Print(AlbumTable(statistics.albums), session);
  Print(PlayedTable(statistics.mostPlayed), session);
  if (terminal.width == 0) return;
  session.output.WriteLine("");
  for (const std::string& line : FoldLine(NextCommands(session.options), terminal.width)) {
    session.output.WriteLine(line);
  }
}

// ---- As JSON ----

JsonArray TalliesJson(const std::vector<Tally>& tallies, bool withArtist) {
  JsonArray list;
  for (const Tally& tally : tallies) {
    JsonObject entry{{"name", tally.name}};
    if (withArtist)
      entry.Add({"artist", tally.artist.empty() ? kJsonNull : std::string_view(tally.artist)});
    entry.Add({"songs", tally.songs});
    entry.Add({"totalTime", tally.time});
    list.Add(entry);
  }
  return list;
}

void PrintJson(const Statistics& statistics, const GroupCounts& groups, Session& session) {
  JsonArray mostPlayed;
  for (const PlayedSong& song : statistics.mostPlayed) {
    mostPlayed.Add(
        JsonObject{{"name", song.name}, {"artist", song.artist}, {"playCount", song.plays}});
  }
  const JsonObject playlists{{"library", groups[0]}, {"genius", groups[1]}, {"other", groups[2]}};
  const JsonObject overview{{"library", session.libraryPath},
                            {"songs", statistics.songs},
                            {"music", MusicOf(statistics)},
                            {"movies", statistics.movies},
                            {"podcasts", statistics.podcasts},
                            {"totalTime", statistics.time},
                            {"playlists", playlists},
                            {"artists", TalliesJson(statistics.artists, false)},
                            {"genres", TalliesJson(statistics.genres, false)},
                            {"albums", TalliesJson(statistics.albums, true)},
                            {"mostPlayed", mostPlayed}};
  session.output.WriteLine(overview.Text());
}

}  // namespace

ExitCode ShowOverview(Session& session) {
  const Statistics statistics = CollectStatistics(session.library);
  const GroupCounts groups = CountPlaylists(session.library);
  if (session.options.json) {
    PrintJson(statistics, groups, session);
  } else {
    PrintScreen(statistics, groups, session);
  }
  return ExitCode::Done;
}

}  // namespace tavrel::host
