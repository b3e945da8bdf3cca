// tavrel songs: the songs of one playlist, or of the whole library.
#include "host/commands/Commands.h"
#include "host/commands/SongList.h"
#include "host/library/PlaylistSearch.h"
#include "host/library/Playlists.h"

namespace tavrel::host {

ExitCode ListSongs(const SongsArguments& arguments, Session& session) {
  PlaylistRecord* playlist =
      arguments.playlist ? FindPlaylist(ReadPlaylists(session.library), *arguments.playlist).handle
                         : session.library.openAllSongs();
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

}  // namespace tavrel::host
