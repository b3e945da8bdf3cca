// tavrel ringtones: the ringtones, and adding one to iTunes.
#include "host/Commands.h"
#include "host/library/RingtoneAdding.h"
#include "host/library/SongReader.h"
#include "host/output/Json.h"
#include "host/output/Table.h"

namespace tavrel::host {
namespace {

constexpr std::int32_t kRingtoneKind = 55;

struct Arguments {
  std::string file;
  bool force = false;
};

// The last playlist of the first group; null when the library had no memory for it.
PlaylistRecord* FindRingtones(const Library& library) {
  PlaylistRecord* last = library.openPlaylist(0, library.getPlaylistCount(0) - 1);
  return library.getPlaylistKind(last) == kRingtoneKind ? last : nullptr;
}

std::string_view FileName(std::string_view path) {
  return path.substr(path.rfind('/') + 1);
}

void PrintTable(PlaylistRecord* ringtones, Session& session) {
  Table table({{.title = "#", .align = Align::Right, .style = Style::Dim},
               {.title = "Name", .weight = 1},
               {.title = "File", .weight = 1, .rank = 1}});
  SongReader reader(session.library);
  const std::int32_t count = session.library.getSongCount(ringtones);
  for (std::int32_t position = 0; position < count; ++position) {
    const Song& ringtone = reader.Read(ringtones, position);
    table.Add(position);
    table.Add(ringtone.name.value_or(""));
    table.Add(FileName(ringtone.location.value_or("")));
  }
  for (const std::string& line : table.Lines(session.terminal)) session.output.WriteLine(line);
}

void PrintJson(PlaylistRecord* ringtones, Session& session) {
  SongReader reader(session.library);
  JsonList list(session.output);
  const std::int32_t count = session.library.getSongCount(ringtones);
  for (std::int32_t position = 0; position < count; ++position) {
    const Song& ringtone = reader.Read(ringtones, position);
    list.Add({{"position", position},
              {"name", JsonText(ringtone.name)},
              {"location", JsonText(UserPath(session, ringtone.location.value_or("")))}});
  }
  list.End();
}

ExitCode ListRingtones(Session& session) {
  PlaylistRecord* ringtones = FindRingtones(session.library);
  if (session.options.json) {
    PrintJson(ringtones, session);
  } else if (session.library.getSongCount(ringtones) == 0) {
    Complain("the library has no ringtones");
  } else {
    PrintTable(ringtones, session);
  }
  return ExitCode::Done;
}

}  // namespace

void AddRingtones(CLI::App& parser, Run& run) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App* command = parser.add_subcommand("ringtones", "List the ringtones, or add one");
  CLI::App* add = command->add_subcommand("add", "Add a ringtone to iTunes");
  add->add_option("FILE", arguments->file, "The ringtone's file")->required()->type_name("");
  add->add_flag("--force", arguments->force,
                "Send the script also when the file's path changes it");
  command->callback([&run, add, arguments] {
    if (!add->parsed()) {
      run = ListRingtones;
      return;
    }
    run = [arguments](Session& session) {
      return AddRingtone(arguments->file, arguments->force, session);
    };
  });
}

}  // namespace tavrel::host
