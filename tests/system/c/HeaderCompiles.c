/* The public header alone, in every C standard it promises. Also compiled as C++. */
#include "tavrel/tavrel.h"

/* A second time: it must guard itself. */
#include <stddef.h>

#include "tavrel/tavrel.h"

#if defined(__cplusplus)
#define HOLDS static_assert
#else
#define HOLDS _Static_assert
#endif

/* The records that hosts fill and read, in bytes: where pointers have 8, and where they have 4. */
#define BYTES(wide, narrow) (sizeof(void*) == 8 ? wide##u : narrow##u)
#define STANDS_AT(record, field, wide, narrow) \
  HOLDS(offsetof(record, field) == BYTES(wide, narrow), #record "." #field)
#define TAKES(record, wide, narrow) HOLDS(sizeof(record) == BYTES(wide, narrow), #record)

STANDS_AT(SongInfo, name, 0, 0);
STANDS_AT(SongInfo, nameSize, 8, 4);
STANDS_AT(SongInfo, location, 16, 8);
STANDS_AT(SongInfo, locationSize, 24, 12);
STANDS_AT(SongInfo, totalTime, 28, 16);
STANDS_AT(SongInfo, artist, 32, 20);
STANDS_AT(SongInfo, artistSize, 40, 24);
STANDS_AT(SongInfo, album, 48, 28);
STANDS_AT(SongInfo, albumSize, 56, 32);
STANDS_AT(SongInfo, genre, 64, 36);
STANDS_AT(SongInfo, genreSize, 72, 40);
STANDS_AT(SongInfo, reserved, 76, 44);
STANDS_AT(SongInfo, playCount, 80, 48);
STANDS_AT(SongInfo, trackNumber, 84, 52);
STANDS_AT(SongInfo, movie, 88, 56);
TAKES(SongInfo, 96, 60);

STANDS_AT(ArtworkInfo, format, 0, 0);
STANDS_AT(ArtworkInfo, width, 4, 4);
STANDS_AT(ArtworkInfo, height, 8, 8);
STANDS_AT(ArtworkInfo, data, 16, 12);
STANDS_AT(ArtworkInfo, dataSize, 24, 16);
TAKES(ArtworkInfo, 32, 20);

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
