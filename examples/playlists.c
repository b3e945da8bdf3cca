#include <stdio.h>
#include <tavrel/tavrel.h>

int main(void) {
  for (int i = 0; i < GetPlaylistCount(0); ++i) {
    char name[256] = "";
    GetPlaylistName(0, i, name, sizeof name);
    printf("%5d  %s\n", GetSongCount(OpenPlaylist(0, i)), name);
  }
}
