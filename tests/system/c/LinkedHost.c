/* A host that links the library: the loader has read the user's library before main() runs. The
 * first song of the playlist "Music" must come out as the file has it. */
#include <stdlib.h>
#include <string.h>

#include "Check.h"
#include "tavrel/tavrel.h"

static char* Buffer(int32_t size) {
  char* buffer = (char*)malloc((size_t)size + 1);
  if (buffer == NULL) abort();
  memset(buffer, '#', (size_t)size + 1);
  return buffer;
}

/* Counts the pairs that have a text. */
static int32_t CountTexts(const char* key, const char* text, const char* type, void* context) {
  CHECK(key[0] != '\0' && type[0] != '\0');
  if (text != NULL) ++*(int32_t*)context;
  return 1;
}

static int32_t KeepPosition(int32_t index, void* context) {
  *(int32_t*)context = index;
  return 0;
}

static void CheckProperties(PlaylistRecord* music) {
  SongInfo terms;
  char term[] = "ROLL";
  int32_t texts = 0;
  int32_t position = -1;
  int32_t size = GetSongProperty(music, 1, "Artist", NULL, 0);
  char* artist = Buffer(size);
  CHECK(size == 6);
  CHECK(GetSongProperty(music, 1, "Artist", artist, size) == size);
  CHECK(strcmp(artist, "AC&DC") == 0 && artist[size] == '#');
  CHECK(GetPlaylistProperty(music, "Music", artist, size) == 5 && strcmp(artist, "true") == 0);
  CHECK(GetLibraryProperty("Library Persistent ID", NULL, 0) == 17);
  CHECK(VisitSongProperties(music, 1, CountTexts, &texts) == 4 && texts == 4);
  CHECK(VisitPlaylistProperties(music, CountTexts, &texts) == 4 && texts == 7);
  CHECK(VisitLibraryProperties(CountTexts, &texts) == 5 && texts == 10);
  memset(&terms, 0, sizeof terms);
  terms.name = term;
  CHECK(FindSongs(&terms, KeepPosition, &position) == 1 && position == 1);
  free(artist);
}

int main(void) {
  PlaylistRecord* music = OpenPlaylist(0, 0);
  SongInfo info;
  int32_t size = GetPlaylistName(0, 0, NULL, 0);
  char* name = Buffer(size);
  int32_t total;

  CHECK(music != NULL);
  CHECK(size == 6);
  CHECK(GetPlaylistName(0, 0, name, size) == size);
  CHECK(strcmp(name, "Music") == 0 && name[size] == '#');
  CHECK(GetPlaylistCount(1) == 1);
  CHECK(GetPlaylistCount(2) == 2);
  CHECK(GetPlaylistKind(music) == 4);
  CHECK(GetSongCount(music) == 3);
  CHECK(GetSongCount(OpenAllSongs()) == 5);

  memset(&info, 0, sizeof info);
  info.reserved = 4711;
  total = GetSongInfo(music, 1, &info);
  CHECK(total == (int32_t)sizeof info + info.nameSize + info.locationSize + info.artistSize);
  info.name = Buffer(info.nameSize);
  info.location = Buffer(info.locationSize);
  info.artist = Buffer(info.artistSize);
  CHECK(GetSongInfo(music, 1, &info) == total);
  CHECK(strcmp(info.name, "Rock & Roll") == 0 && info.nameSize == 16);
  CHECK(strcmp(info.location, "/Users/x/Caf\xC3\xA9.m4a") == 0);
  CHECK(strcmp(info.artist, "AC&DC") == 0 && info.artistSize == 10);
  CHECK(info.name[info.nameSize] == '#' && info.artist[info.artistSize] == '#');
  CHECK(info.album == NULL && info.albumSize == 0);
  CHECK(info.reserved == 4711);

  CheckProperties(music);
  CHECK(ClosePlaylist(music) == 1);
  CHECK(AgentFinalizer() == 0);
  CHECK(AgentFinalizer() == 0);
  free(name);
  free(info.name);
  free(info.location);
  free(info.artist);
  return failures == 0 ? 0 : 1;
}
