// tavrel songs: the songs of one playlist, or of the whole library.
#include "host/commands/Commands.h"
#include "host/commands/SongList.h"
#include "host/library/PlaylistSearch.h"
#include "host/library/Playlists.h"

namespace tavrel::host {
namespace {

struct SongsArguments {
  std::optional<std::string> playlist;  // none: all songs
  bool all = false;                     // the same, said aloud
  SongListOptions list;
};

ExitCode ListSongs(const SongsArguments& arguments, Session& session) {
  PlaylistRecord* playlist = session.library.openAllSongs();
  if (arguments.playlist) {
    const std::vector<Playlist> playlists = ReadPlaylists(session.library);
    playlist = FindPlaylist(playlists, *arguments.playlist, session.options).handle;
  }
  SongList list{.playlist = playlist,
                .positions = AllPositions(session.library, playlist),
                .tableFields = {Field::Name, Field::Artist, Field::Album, Field::Track,
                                Field::Genre, Field::Seconds, Field::Plays},
                .withPositions = true,
                .marks = {},
                .listsOf = {}};
  PrintSongs(list, arguments.list, session);
  if (!list.positions.empty()) return ExitCode::Done;
  Complain(arguments.playlist ? "the playlist is empty" : "the library has no songs");
  return ExitCode::Failed;
}

}  // namespace

void DefineSongs(CommandDefinition program) {
  const auto arguments = std::make_shared<SongsArguments>();
  CommandDefinition command =
      program.AddCommand("songs", "List the songs of a playlist, or all of them");
  command.AddPlace("LIST", arguments->playlist,
                   "A playlist: its name, Folder/Name, id:PERSISTENT-ID or GROUP:POSITION;\n"
                   "without it every song of the library, in the file's order");
  command.AddFlag("--all", arguments->all, "Every song, as without LIST");
  AddSongListOptions(command, arguments->list);
  command.Makes([arguments] {
    if (arguments->all && arguments->playlist) {
      throw UsageError("--all and LIST exclude each other");
    }
    return Task{.run = [arguments](Session& session) { return ListSongs(*arguments, session); }};
  });
}

}  // namespace tavrel::host
