/* The public header alone, in every C standard it promises. Also compiled as C++. */
#include "tavrel/tavrel.h"

/* A second time: it must guard itself. */
#include "tavrel/tavrel.h"

#if defined(__cplusplus)
static_assert(sizeof(void*) != 8 || sizeof(SongInfo) == 96, "SongInfo");
#else
_Static_assert(sizeof(void*) != 8 || sizeof(SongInfo) == 96, "SongInfo");
#endif

int32_t UseEverything(PlaylistRecord* playlist, SongInfo* info, char* buffer);
int32_t UseProperties(const PlaylistRecord* playlist, PropertyVisitor visitor, char* buffer);

int32_t UseProperties(const PlaylistRecord* playlist, PropertyVisitor visitor, char* buffer) {
  int32_t sum = GetSongProperty(playlist, 0, "Name", buffer, 1);
  sum += GetPlaylistProperty(playlist, "Name", buffer, 1) + GetLibraryProperty("Date", buffer, 1);
  sum += VisitSongProperties(playlist, 0, visitor, buffer);
  return sum + VisitPlaylistProperties(playlist, visitor, buffer) +
         VisitLibraryProperties(visitor, buffer);
}

int32_t UseEverything(PlaylistRecord* playlist, SongInfo* info, char* buffer) {
  const PlaylistRecord* constPlaylist = OpenPlaylist(0, 0);
  int32_t sum = AgentInitializer() + AgentFinalizer() + GetPlaylistCount(0);
  sum += GetPlaylistKind(constPlaylist) + GetSongCount(constPlaylist);
  sum += ClosePlaylist(OpenAllSongs()) + GetSongInfo(playlist, 0, info);
  return sum + GetPlaylistName(0, 0, buffer, TAVREL_VERSION_MAJOR);
}
