// tavrel playlists: the playlists in their folders.
#include "host/library/Playlists.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>

#include "host/commands/Commands.h"
#include "host/commands/ListFormat.h"
#include "host/commands/RecordList.h"
#include "host/commands/SongJson.h"
#include "host/library/PlaylistTree.h"
#include "host/library/SongMatching.h"
#include "host/library/SongPlaces.h"
#include "host/output/Format.h"
#include "host/output/Table.h"

namespace tavrel::host {
namespace {

struct PlaylistsArguments {
  bool all = false;  // built-in and empty ones, too
  SongQuery with;    // only those that hold such a song; without words all
  FormatOptions format;
};

constexpr std::size_t kDeepestShown =
    20;  // what is deeper stands below it without going further in

// A playlist with what is told of it.
struct ListFacts {
  const Playlist* playlist;
  const Playlist* folder;  // that holds it; null at the top
  std::size_t depth;
  std::int64_t time;                // in milliseconds
  std::vector<std::int32_t> found;  // songs that were looked for, as positions in the playlist
};

std::int64_t TimeOf(const Playlist& playlist, const Library& library) {
  std::int64_t time = 0;
  for (std::int32_t i = 0; i < playlist.songCount; ++i) {
    SongInfo song{};
    library.getSongInfo(playlist.handle, i, &song);
    time += std::max(song.totalTime, 0);
  }
  return time;
}

// Playlists that the user has made, and that hold something; folders around one that is shown are, too.
std::vector<bool> ChooseShown(const std::vector<Playlist>& playlists,
                              const std::vector<TreeEntry>& tree, bool all,
                              const std::vector<std::vector<std::int32_t>>* found) {
  std::vector<bool> shown(playlists.size(), false);
  for (auto entry = tree.rbegin(); entry != tree.rend(); ++entry) {
    const Playlist& playlist = playlists[entry->playlist];
    const bool isOwn = playlist.type != PlaylistType::BuiltIn && playlist.songCount > 0;
    const bool isFound = found == nullptr || !(*found)[entry->playlist].empty();
    if (playlist.isInFile && (all || isOwn) && isFound) shown[entry->playlist] = true;
    if (shown[entry->playlist] && entry->parent != kNoParent) shown[entry->parent] = true;
  }
  return shown;
}

// For each playlist the positions of the songs that match.
std::vector<std::vector<std::int32_t>> FindInPlaylists(const std::vector<Playlist>& playlists,
                                                       const SongQuery& query,
                                                       const Library& library) {
  std::vector<bool> matches(static_cast<std::size_t>(library.getSongCount(library.openAllSongs())),
                            false);
  for (const std::int32_t song : MatchSongs(library, query, 0)) {
    matches[static_cast<std::size_t>(song)] = true;
  }
  const SongNumbers numbers(library);
  std::vector<std::vector<std::int32_t>> found(playlists.size());
  for (std::size_t list = 0; list < playlists.size(); ++list) {
    for (std::int32_t i = 0; i < playlists[list].songCount; ++i) {
      const std::int32_t song = numbers.Of(playlists[list].handle, i);
      if (song >= 0 && matches[static_cast<std::size_t>(song)]) found[list].push_back(i);
    }
  }
  return found;
}

void PrintTable(const std::vector<ListFacts>& lists, bool withFound, Session& session) {
  std::vector<Column> columns{
      {.title = "Name", .weight = 1},
      {.title = "Type", .style = Style::Dim},
      {.title = "Songs", .align = Align::Right},
      {.title = "Time", .align = Align::Right, .rank = 1},
      {.title = "At", .align = Align::Right, .style = Style::Dim, .rank = 2}};
  if (withFound) columns.push_back({.title = "Found", .align = Align::Right});
  const Table table(columns, [&](Rows& rows) {
    for (const ListFacts& list : lists) {
      rows.Add(std::string(2 * std::min(list.depth, kDeepestShown), ' ') +
               list.playlist->name.value_or(""));
      rows.Add(TypeName(list.playlist->type));
      rows.Add(list.playlist->songCount);
      rows.Add(Clock(list.time));
      rows.Add(fmt::format("{}:{}", list.playlist->group, list.playlist->position));
      if (withFound) rows.Add(static_cast<std::int64_t>(list.found.size()));
    }
  });
  table.Print(session.terminal, session.output);
}

RecordValue TextOrNone(const std::string& text) {
  return text.empty() ? RecordValue(std::nullopt) : RecordValue(text);
}

std::vector<RecordValue> ValuesOf(const ListFacts& list) {
  const Playlist& playlist = *list.playlist;
  const std::string folder = list.folder == nullptr ? std::string() : list.folder->id;
  return {TextOrNone(playlist.id), playlist.name,      TypeName(playlist.type),
          TextOrNone(folder),      playlist.group,     playlist.position,
          playlist.kind,           playlist.songCount, list.time / 1000};
}

// Songs that were found: in JSON each of them, as everywhere.
class FoundSongs {
 public:
  explicit FoundSongs(const Session& session)
      : json_(columns_, session), reader_(session.library, columns_.Wanted()) {}

  RecordValue In(const ListFacts& list) {
    std::string json = "[";
    std::string_view between;
    for (const std::int32_t song : list.found) {
      json += between;
      json_.AppendOpen(json, reader_.Read(list.playlist->handle, song));
      json += '}';
      between = ",";
    }
    return RecordValue::Written(json + "]");
  }

 private:
  SongColumns columns_{.fields = AllFields()};
  SongJson json_;
  SongRecordReader reader_;
};

void PrintRecords(const std::vector<ListFacts>& lists, bool withFound, const FormatOptions& options,
                  Session& session) {
  std::vector<std::string_view> names{"id",       "name", "type",  "folder", "group",
                                      "position", "kind", "songs", "seconds"};
  if (withFound) names.emplace_back("found");
  const ListFormat format = FormatOf(options, session.options);
  RecordList records(names, format, options.forSpreadsheet, session.output);
  FoundSongs found(session);
  for (const ListFacts& list : lists) {
    std::vector<RecordValue> values = ValuesOf(list);
    if (withFound && format == ListFormat::Json) {
      values.push_back(found.In(list));
    } else if (withFound) {
      values.emplace_back(static_cast<std::int64_t>(list.found.size()));
    }
    records.Add(values);
  }
  records.End();
}

ExitCode ListPlaylists(const PlaylistsArguments& arguments, Session& session) {
  const std::vector<Playlist> playlists = ReadPlaylists(session.library);
  const std::vector<TreeEntry> tree = MakeTree(playlists);
  const bool withFound = !arguments.with.words.empty();
  std::vector<std::vector<std::int32_t>> found(playlists.size());
  if (withFound) found = FindInPlaylists(playlists, arguments.with, session.library);
  const std::vector<bool> shown =
      ChooseShown(playlists, tree, arguments.all, withFound ? &found : nullptr);

  std::vector<ListFacts> lists;
  for (const TreeEntry& entry : tree) {
    if (!shown[entry.playlist]) continue;
    const Playlist& playlist = playlists[entry.playlist];
    lists.push_back({&playlist, entry.parent == kNoParent ? nullptr : &playlists[entry.parent],
                     entry.depth, TimeOf(playlist, session.library),
                     std::move(found[entry.playlist])});
  }
  if (FormatOf(arguments.format, session.options) != ListFormat::Table) {
    PrintRecords(lists, withFound, arguments.format, session);
  } else if (!lists.empty()) {
    PrintTable(lists, withFound, session);
  }
  if (!lists.empty()) return ExitCode::Done;
  if (withFound) {
    Complain("no playlist holds such a song");
  } else {
    Complain(arguments.all
                 ? "the library has no playlists"
                 : "the library has no playlists of your own; --all shows the built-in ones");
  }
  return ExitCode::Failed;
}

}  // namespace

void DefinePlaylists(CommandDefinition program) {
  const auto arguments = std::make_shared<PlaylistsArguments>();
  CommandDefinition command =
      program.AddCommand("playlists", "Show the playlists in their folders");
  command.AddFlag("--all", arguments->all, "Also built-in and empty ones");
  command.AddTexts("--with", arguments->with.words, "TEXT",
                   "Only those that hold a song with this text; again: with all of them");
  AddFormatOptions(command, arguments->format, JsonLines::NotOffered);
  command.Makes([arguments] {
    return Task{
        .run = [arguments](Session& session) { return ListPlaylists(*arguments, session); }};
  });
}

}  // namespace tavrel::host
