// cover TEXT FILE: lists the user's playlists, finds a song, and writes its cover to a file.
#include <tavrel/tavrel.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

struct Close {
  void operator()(ArtworkHandle* artwork) const noexcept { CloseArtwork(artwork); }
};
using Artwork = std::unique_ptr<ArtworkHandle, Close>;

std::string PlaylistName(int group, int index) {
  std::string name(static_cast<std::size_t>(GetPlaylistName(group, index, nullptr, 0)), '\0');
  GetPlaylistName(group, index, name.data(), static_cast<int>(name.size()));
  return name.c_str();  // without the terminator, which a size counts
}

void ListPlaylists() {
  for (int group = 0; group < 3; ++group) {
    for (int i = 0; i < GetPlaylistCount(group); ++i) {
      const int songs = GetSongCount(OpenPlaylist(group, i));
      std::printf("%5d  %s\n", songs, PlaylistName(group, i).c_str());
    }
  }
}

// A lambda without captures is a callback; what it needs comes by the context. Nothing may be
// thrown out of it.
std::optional<int> FindSongWithCover(std::string text) {
  std::optional<int> found;
  SongInfo terms{};
  terms.name = terms.artist = terms.album = text.data();
  FindSongs(
      &terms,
      [](std::int32_t index, void* context) -> std::int32_t {
        const Artwork artwork(OpenArtwork(OpenAllSongs(), index));
        if (GetArtworkCount(artwork.get()) == 0) return 1;
        *static_cast<std::optional<int>*>(context) = index;
        return 0;
      },
      &found);
  return found;
}

void ShowSong(int index) {
  SongInfo info{};
  GetSongInfo(OpenAllSongs(), index, &info);
  std::string name(static_cast<std::size_t>(info.nameSize) + 1, '\0');
  std::string artist(static_cast<std::size_t>(info.artistSize) + 1, '\0');
  info.name = name.data();
  info.artist = artist.data();
  GetSongInfo(OpenAllSongs(), index, &info);
  std::printf("%s by %s\n", name.c_str(), artist.c_str());
}

bool WriteCover(int index, const char* path) {
  const Artwork artwork(OpenArtwork(OpenAllSongs(), index));
  ArtworkInfo info{};
  GetArtworkInfo(artwork.get(), 0, &info);
  if (info.dataSize <= 0) return false;
  std::vector<char> bytes(static_cast<std::size_t>(info.dataSize));
  info.data = reinterpret_cast<std::uint8_t*>(bytes.data());
  GetArtworkInfo(artwork.get(), 0, &info);
  std::printf("%s, %d x %d, %d bytes\n", info.format == 0 ? "png" : "jpeg", info.width, info.height,
              info.dataSize);
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), info.dataSize);
  file.close();
  return file.good();
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) {
    std::fprintf(stderr, "usage: cover TEXT FILE\n");
    return 2;
  }
  ListPlaylists();
  const std::optional<int> song = FindSongWithCover(arguments[1]);
  if (!song) {
    std::fprintf(stderr, "no song with a cover holds %s\n", arguments[1]);
    return 1;
  }
  ShowSong(*song);
  return WriteCover(*song, arguments[2]) ? 0 : 1;
}
