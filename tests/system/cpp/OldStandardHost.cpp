// A host in the oldest C++ that the public header promises.
#include <cstdio>
#include <string>
#include <vector>

#include "tavrel/tavrel.h"

int main() {
  int songs = 0;
  for (int group = 0; group < 3; ++group) {
    for (int index = 0; index < GetPlaylistCount(group); ++index) {
      PlaylistRecord* playlist = OpenPlaylist(group, index);
      std::vector<char> name(static_cast<std::size_t>(GetPlaylistName(group, index, nullptr, 0)) +
                             1);
      GetPlaylistName(group, index, name.data(), static_cast<int32_t>(name.size()));
      if (std::string(name.data()) != "Ringtones") songs += GetSongCount(playlist);
    }
  }
  if (songs != 8) std::fprintf(stderr, "%d songs in the playlists\n", songs);
  return songs == 8 ? 0 : 1;
}
