#include <tavrel/tavrel.h>

#include <cstdio>
#include <string>

int main() {
  for (int i = 0; i < GetPlaylistCount(0); ++i) {
    const int size = GetPlaylistName(0, i, nullptr, 0);
    std::string name(static_cast<std::size_t>(size), '\0');
    GetPlaylistName(0, i, name.data(), size);
    std::printf("%5d  %s\n", GetSongCount(OpenPlaylist(0, i)), name.c_str());
  }
}
