// tavrel playlists: every playlist, group by group.
#include "host/library/Playlists.h"

#include <fmt/format.h>

#include "host/commands/Commands.h"
#include "host/output/Json.h"
#include "host/output/Table.h"

namespace tavrel::host {
namespace {

void PrintTable(const std::vector<Playlist>& playlists, Session& session) {
  const Table table(
      {
          {.title = "Group", .style = Style::Dim},
          {.title = "Position", .align = Align::Right},
          {.title = "Kind", .align = Align::Right, .style = Style::Dim, .rank = 1},
          {.title = "Songs", .align = Align::Right},
          {.title = "Name", .weight = 1},
      },
      [&](Rows& rows) {
        for (const Playlist& playlist : playlists) {
          rows.Add(GroupName(playlist.group));
          rows.Add(fmt::format("{}:{}", playlist.group, playlist.position));
          rows.Add(playlist.kind);
          rows.Add(playlist.songCount);
          rows.Add(playlist.name.value_or(""));
        }
      });
  table.Print(session.terminal, session.output);
}

void PrintJson(const std::vector<Playlist>& playlists, Session& session) {
  JsonList list(session.output);
  for (const Playlist& playlist : playlists) {
    list.Add(JsonObject{{"group", playlist.group},
                        {"position", playlist.position},
                        {"kind", playlist.kind},
                        {"songs", playlist.songCount},
                        {"name", playlist.name}});
  }
  list.End();
}

}  // namespace

ExitCode ListPlaylists(Session& session) {
  const std::vector<Playlist> playlists = ReadPlaylists(session.library);
  if (session.options.json) {
    PrintJson(playlists, session);
  } else if (!playlists.empty()) {
    PrintTable(playlists, session);
  }
  if (!playlists.empty()) return ExitCode::Done;
  Complain("the library has no playlists");
  return ExitCode::Failed;
}

}  // namespace tavrel::host
