/* startup_probe: a small host, run by `startup` once for each measurement. It prints how many seconds
 * its work took.
 *   startup_probe LIBRARY        opens the library and asks for its first song
 *   startup_probe OBJECT FILE    opens another shared object and reads the file
 */
#include <dlfcn.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include "tavrel/tavrel.h"

static double SecondsNow(void) {
  struct timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return (double)now.tv_sec + (double)now.tv_nsec * 1e-9;
}

/* A function's address is an object's here, which C itself does not promise. */
static void FindFunction(void* library, const char* name, void* function) {
  void* address = dlsym(library, name);
  memcpy(function, &address, sizeof address);
}

static int AskForFirstSong(void* library) {
  PlaylistRecord* (*openAllSongs)(void);
  int32_t (*getSongInfo)(PlaylistRecord*, int32_t, SongInfo*);
  SongInfo info;
  FindFunction(library, "OpenAllSongs", &openAllSongs);
  FindFunction(library, "GetSongInfo", &getSongInfo);
  memset(&info, 0, sizeof info);
  return openAllSongs != NULL && getSongInfo != NULL && getSongInfo(openAllSongs(), 0, &info) > 0 &&
         info.nameSize > 0;
}

static int ReadWhole(const char* path) {
  struct stat state;
  const int file = open(path, O_RDONLY);
  if (file < 0 || fstat(file, &state) != 0) return 0;
  void* bytes = malloc((size_t)state.st_size);
  const int whole = bytes != NULL && read(file, bytes, (size_t)state.st_size) == state.st_size;
  close(file);
  return whole;
}

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const double start = SecondsNow();
  void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  if (library == NULL) return 1;
  if (argc == 2 ? !AskForFirstSong(library) : !ReadWhole(argv[2])) return 1;
  printf("%.9f\n", SecondsNow() - start);
  return 0;
}
