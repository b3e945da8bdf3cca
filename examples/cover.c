/* cover TEXT FILE: lists the user's playlists, finds a song, and writes its cover to a file. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <tavrel/tavrel.h>

/* Room for a text of `size` bytes, with an empty text in it. */
static char* Room(int32_t size) {
  char* room = calloc((size_t)size + 1, 1);
  if (room == NULL) exit(EXIT_FAILURE);
  return room;
}

static void ListPlaylists(void) {
  for (int32_t group = 0; group < 3; ++group) {
    for (int32_t i = 0; i < GetPlaylistCount(group); ++i) {
      const int32_t size = GetPlaylistName(group, i, NULL, 0);
      char* name = Room(size);
      GetPlaylistName(group, i, name, size);
      printf("%5d  %s\n", GetSongCount(OpenPlaylist(group, i)), name);
      free(name);
    }
  }
}

typedef struct {
  int32_t index; /* of the song among all songs */
  ArtworkHandle* artwork;
} Found;

/* Called for each match; ends the search at the first that has a cover. */
static int32_t TakeSongWithCover(int32_t index, void* context) {
  ArtworkHandle* artwork = OpenArtwork(OpenAllSongs(), index);
  if (GetArtworkCount(artwork) == 0) {
    CloseArtwork(artwork);
    return 1;
  }
  Found* found = context;
  found->index = index;
  found->artwork = artwork;
  return 0;
}

static Found FindSongWithCover(char* text) {
  Found found = {0, NULL};
  SongInfo terms;
  memset(&terms, 0, sizeof terms);
  terms.name = terms.artist = terms.album = text;
  FindSongs(&terms, TakeSongWithCover, &found);
  return found;
}

static void ShowSong(int32_t index) {
  SongInfo info;
  memset(&info, 0, sizeof info);
  GetSongInfo(OpenAllSongs(), index, &info);
  info.name = Room(info.nameSize);
  info.artist = Room(info.artistSize);
  GetSongInfo(OpenAllSongs(), index, &info);
  printf("%s by %s\n", info.name, info.artist);
  free(info.name);
  free(info.artist);
}

static int WriteCover(ArtworkHandle* artwork, const char* path) {
  ArtworkInfo info;
  memset(&info, 0, sizeof info);
  GetArtworkInfo(artwork, 0, &info); /* no room: tells the size alone */
  if (info.dataSize <= 0) return 0;
  info.data = calloc((size_t)info.dataSize, 1);
  if (info.data == NULL) return 0;
  GetArtworkInfo(artwork, 0, &info);
  FILE* file = fopen(path, "wb");
  int written = file != NULL && fwrite(info.data, (size_t)info.dataSize, 1, file) == 1;
  written = file != NULL && fclose(file) == 0 && written;
  printf("%s, %d x %d, %d bytes\n", info.format == 0 ? "png" : "jpeg", info.width, info.height,
         info.dataSize);
  free(info.data);
  return written;
}

int main(int count, char** arguments) {
  if (count != 3) {
    fprintf(stderr, "usage: cover TEXT FILE\n");
    return 2;
  }
  ListPlaylists();
  const Found found = FindSongWithCover(arguments[1]);
  if (found.artwork == NULL) {
    fprintf(stderr, "no song with a cover holds %s\n", arguments[1]);
    return 1;
  }
  ShowSong(found.index);
  const int written = WriteCover(found.artwork, arguments[2]);
  CloseArtwork(found.artwork);
  return written ? 0 : 1;
}
