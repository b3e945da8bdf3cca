/* two_homes LIBRARY HOME...: how many songs the library of each of these home folders has. LIBRARY
 * is the shared library's name or path; it is opened at run time. */
#define _POSIX_C_SOURCE 200809L /* for setenv */
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <tavrel/tavrel.h>

/* The library reads when it is loaded, below what $HOME is then. */
static void* OpenLibrary(const char* library, const char* home) {
  const char* value = getenv("HOME");
  char* former = value == NULL ? NULL : strdup(value);
  if (value != NULL && former == NULL) return NULL;
  setenv("HOME", home, 1);
  void* handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
  if (former == NULL) {
    unsetenv("HOME");
  } else {
    setenv("HOME", former, 1);
  }
  free(former);
  return handle;
}

static int CountSongs(void* handle) {
  PlaylistRecord* (*openAllSongs)(void);
  int32_t (*getSongCount)(const PlaylistRecord*);
  /* POSIX promises that what dlsym gives can stand for a function. */
  *(void**)&openAllSongs = dlsym(handle, "OpenAllSongs");
  *(void**)&getSongCount = dlsym(handle, "GetSongCount");
  if (openAllSongs == NULL || getSongCount == NULL) return -1;
  PlaylistRecord* songs = openAllSongs(); /* null: there is no library that can be read */
  return songs == NULL ? -1 : getSongCount(songs);
}

int main(int count, char** arguments) {
  for (int i = 2; i < count; ++i) {
    void* handle = OpenLibrary(arguments[1], arguments[i]);
    if (handle == NULL) {
      fprintf(stderr, "%s\n", dlerror());
      return 1;
    }
    printf("%5d  %s\n", CountSongs(handle), arguments[i]);
    dlclose(handle); /* Every handle and every function is gone with it. */
  }
  return 0;
}
