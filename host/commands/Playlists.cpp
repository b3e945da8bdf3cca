// tavrel playlists: every playlist, group by group.
#include <fmt/format.h>

#include "host/Commands.h"
#include "host/library/SongReader.h"
#include "host/output/Json.h"
#include "host/output/Table.h"

namespace tavrel::host {
namespace {

void PrintTable(const std::vector<Playlist>& playlists, Session& session) {
  Table table({
      {.title = "Group", .style = Style::Dim},
      {.title = "Position", .align = Align::Right},
      {.title = "Kind", .align = Align::Right, .style = Style::Dim, .rank = 1},
      {.title = "Songs", .align = Align::Right},
      {.title = "Name", .weight = 1},
  });
  for (const Playlist& playlist : playlists) {
    table.Add(GroupName(playlist.group));
    table.Add(fmt::format("{}:{}", playlist.group, playlist.position));
    table.Add(playlist.kind);
    table.Add(playlist.songCount);
    table.Add(playlist.name.value_or(""));
  }
  for (const std::string& line : table.Lines(session.terminal)) session.output.WriteLine(line);
}

void PrintJson(const std::vector<Playlist>& playlists, Session& session) {
  JsonList list(session.output);
  for (const Playlist& playlist : playlists) {
    list.Add({{"group", playlist.group},
              {"position", playlist.position},
              {"kind", playlist.kind},
              {"songs", playlist.songCount},
              {"name", JsonText(playlist.name)}});
  }
  list.End();
}

ExitCode ListPlaylists(Session& session) {
  const std::vector<Playlist> playlists = ReadPlaylists(session.library);
  if (session.options.json) {
    PrintJson(playlists, session);
  } else if (playlists.empty()) {
    Complain("the library has no playlists");
  } else {
    PrintTable(playlists, session);
  }
  return ExitCode::Done;
}

}  // namespace

void AddPlaylists(CLI::App& parser, Run& run) {
  parser.add_subcommand("playlists", "List the playlists")->callback([&run] {
    run = ListPlaylists;
  });
}

}  // namespace tavrel::host
