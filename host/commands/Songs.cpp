// tavrel songs: the songs of one playlist, or of the whole library.
#include <CLI/Error.hpp>

#include "host/Commands.h"
#include "host/library/PlaylistSearch.h"
#include "host/library/SongReader.h"
#include "host/output/Format.h"
#include "host/output/SongJson.h"
#include "host/output/Table.h"

namespace tavrel::host {
namespace {

struct Arguments {
  std::optional<std::string> playlist;
  bool all = false;
};

void PrintTable(PlaylistRecord* playlist, Session& session) {
  Table table({
      {.title = "#", .align = Align::Right, .style = Style::Dim},
      {.title = "Name", .weight = 3, .cut = Cut::Middle},
      {.title = "Artist", .weight = 2, .rank = 1},
      {.title = "Album", .weight = 2, .rank = 3},
      {.title = "Track", .align = Align::Right, .style = Style::Dim, .rank = 6},
      {.title = "Genre", .style = Style::Dim, .weight = 2, .rank = 4},
      {.title = "Time", .align = Align::Right, .rank = 2},
      {.title = "Plays", .align = Align::Right, .style = Style::Dim, .rank = 5},
  });
  const auto addCount = [&table](std::int32_t count) {
    if (count == 0) table.Add("");
    if (count != 0) table.Add(count);
  };
  SongReader reader(session.library);
  const std::int32_t count = session.library.getSongCount(playlist);
  for (std::int32_t position = 0; position < count; ++position) {
    const Song& song = reader.Read(playlist, position);
    table.Add(position);
    table.Add(song.name.value_or(""));
    table.Add(song.artist.value_or(""));
    table.Add(song.album.value_or(""));
    addCount(song.trackNumber);
    table.Add(song.genre.value_or(""));
    table.Add(Clock(song.totalTime));
    addCount(song.playCount);
  }
  for (const std::string& line : table.Lines(session.terminal)) session.output.WriteLine(line);
}

void PrintJson(PlaylistRecord* playlist, Session& session) {
  SongReader reader(session.library);
  JsonList list(session.output);
  const std::int32_t count = session.library.getSongCount(playlist);
  for (std::int32_t position = 0; position < count; ++position) {
    Json element = {{"position", position}};
    element.update(JsonSong(reader.Read(playlist, position), session));
    list.Add(element);
  }
  list.End();
}

ExitCode ListSongs(const Arguments& arguments, Session& session) {
  PlaylistRecord* playlist =
      arguments.all ? session.library.openAllSongs()
                    : FindPlaylist(ReadPlaylists(session.library), *arguments.playlist).handle;
  if (session.options.json) {
    PrintJson(playlist, session);
  } else if (session.library.getSongCount(playlist) == 0) {
    Complain(arguments.all ? "the library has no songs" : "the playlist is empty");
  } else {
    PrintTable(playlist, session);
  }
  return ExitCode::Done;
}

}  // namespace

void AddSongs(CLI::App& parser, Run& run) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App* command = parser.add_subcommand("songs", "List the songs of a playlist");
  command
      ->add_option("PLAYLIST", arguments->playlist,
                   "Its name, or its position as \"tavrel playlists\" shows it")
      ->type_name("");
  command->add_flag("--all", arguments->all, "Every song of the library, in the file's order");
  command->callback([&run, arguments] {
    if (arguments->all == arguments->playlist.has_value()) {
      throw CLI::ValidationError("songs needs either PLAYLIST or --all");
    }
    run = [arguments](Session& session) { return ListSongs(*arguments, session); };
  });
}

}  // namespace tavrel::host
