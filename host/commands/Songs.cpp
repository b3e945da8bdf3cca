// tavrel songs: the songs of one playlist, or of the whole library.
#include "host/commands/Commands.h"
#include "host/commands/SongJson.h"
#include "host/library/PlaylistSearch.h"
#include "host/library/Playlists.h"
#include "host/library/SongReader.h"
#include "host/output/Format.h"
#include "host/output/Table.h"

namespace tavrel::host {
namespace {

void PrintTable(PlaylistRecord* playlist, Session& session) {
  const auto addCount = [](Rows& rows, std::int32_t count) {
    if (count == 0) rows.Add("");
    if (count != 0) rows.Add(count);
  };
  const Table table(
      {
          {.title = "#", .align = Align::Right, .style = Style::Dim},
          {.title = "Name", .weight = 3, .cut = Cut::Middle},
          {.title = "Artist", .weight = 2, .rank = 1},
          {.title = "Album", .weight = 2, .rank = 3},
          {.title = "Track", .align = Align::Right, .style = Style::Dim, .rank = 6},
          {.title = "Genre", .style = Style::Dim, .weight = 2, .rank = 4},
          {.title = "Time", .align = Align::Right, .rank = 2},
          {.title = "Plays", .align = Align::Right, .style = Style::Dim, .rank = 5},
      },
      [&](Rows& rows) {
        ForEachSong(session.library, playlist, [&](std::int32_t position, const Song& song) {
          rows.Add(position);
          rows.Add(song.name.value_or(""));
          rows.Add(song.artist.value_or(""));
          rows.Add(song.album.value_or(""));
          addCount(rows, song.trackNumber);
          rows.Add(song.genre.value_or(""));
          rows.Add(Clock(song.totalTime));
          addCount(rows, song.playCount);
        });
      });
  table.Print(session.terminal, session.output);
}

void PrintJson(PlaylistRecord* playlist, Session& session) {
  JsonList list(session.output);
  ForEachSong(session.library, playlist, [&](std::int32_t position, const Song& song) {
    JsonObject element{{"position", position}};
    AddSong(element, song, session);
    list.Add(element);
  });
  list.End();
}

}  // namespace

ExitCode ListSongs(const SongsArguments& arguments, Session& session) {
  PlaylistRecord* playlist =
      arguments.all ? session.library.openAllSongs()
                    : FindPlaylist(ReadPlaylists(session.library), *arguments.playlist).handle;
  const bool isEmpty = session.library.getSongCount(playlist) == 0;
  if (session.options.json) {
    PrintJson(playlist, session);
  } else if (!isEmpty) {
    PrintTable(playlist, session);
  }
  if (!isEmpty) return ExitCode::Done;
  Complain(arguments.all ? "the library has no songs" : "the playlist is empty");
  return ExitCode::Failed;
}

}  // namespace tavrel::host
