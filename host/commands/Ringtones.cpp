// tavrel ringtones: the ringtones.
#include "host/commands/Commands.h"
#include "host/library/SongReader.h"
#include "host/output/Json.h"
#include "host/output/Table.h"

namespace tavrel::host {
namespace {

constexpr std::int32_t kRingtoneKind = 55;

// The last playlist of the first group; null when the library had no memory for it.
PlaylistRecord* FindRingtones(const Library& library) {
  PlaylistRecord* last = library.openPlaylist(0, library.getPlaylistCount(0) - 1);
  return library.getPlaylistKind(last) == kRingtoneKind ? last : nullptr;
}

std::string_view FileName(std::string_view path) {
  return path.substr(path.rfind('/') + 1);
}

void PrintTable(PlaylistRecord* ringtones, Session& session) {
  const Table table({{.title = "#", .align = Align::Right, .style = Style::Dim},
                     {.title = "Name", .weight = 1},
                     {.title = "File", .weight = 1, .rank = 1}},
                    [&](Rows& rows) {
                      ForEachSong(session.library, ringtones,
                                  [&](std::int32_t position, const Song& ringtone) {
                                    rows.Add(position);
                                    rows.Add(ringtone.name.value_or(""));
                                    rows.Add(FileName(ringtone.location.value_or("")));
                                  });
                    });
  table.Print(session.terminal, session.output);
}

void PrintJson(PlaylistRecord* ringtones, Session& session) {
  JsonList list(session.output);
  ForEachSong(session.library, ringtones, [&](std::int32_t position, const Song& ringtone) {
    list.Add(JsonObject{{"position", position},
                        {"name", ringtone.name},
                        {"location", UserPath(session, ringtone.location.value_or(""))}});
  });
  list.End();
}

ExitCode ListRingtones(Session& session) {
  PlaylistRecord* ringtones = FindRingtones(session.library);
  const bool isEmpty = session.library.getSongCount(ringtones) == 0;
  if (session.options.json) {
    PrintJson(ringtones, session);
  } else if (!isEmpty) {
    PrintTable(ringtones, session);
  }
  if (!isEmpty) return ExitCode::Done;
  Complain("the library has no ringtones");
  return ExitCode::Failed;
}

}  // namespace

void DefineRingtones(CommandDefinition program) {
  CommandDefinition command = program.AddCommand("ringtones", "List the ringtones, or add one");
  DefineRingtoneAdding(command);
  command.Makes([] { return Task{.run = ListRingtones}; });
}

}  // namespace tavrel::host
