// Stands in for the library: tells what a host does to it, and answers with what is hard to put
// into a file.
//
// Writes to the file named by $STANDIN_LOG the value of $HOME, at load and at each
// GetPlaylistCount, and at load what the folder Music/iTunes below it holds. With $STANDIN_SONGS it
// has that many songs (else 2), and with $STANDIN_WAIT its load does not end.
#include <tavrel/tavrel.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

struct PlaylistRecord {
  int unused;
};

namespace {

void Log(const std::string& line) {
  const char* path = std::getenv("STANDIN_LOG");
  if (path == nullptr) return;
  if (std::FILE* file = std::fopen(path, "a")) {
    std::fputs((line + "\n").c_str(), file);
    std::fclose(file);
  }
}

std::string HomeVariable() {
  const char* home = std::getenv("HOME");
  return home != nullptr ? home : "(none)";
}

void LogFolder(const std::filesystem::path& home) {
  namespace fs = std::filesystem;
  std::error_code error;
  Log("mode " + std::to_string(static_cast<unsigned>(fs::status(home, error).permissions())));
  for (const auto& entry : fs::directory_iterator(home / "Music/iTunes", error)) {
    Log(entry.path().filename().string() + " -> " + fs::read_symlink(entry.path(), error).string());
  }
}

__attribute__((constructor)) void Load() {
  Log("load " + HomeVariable());
  LogFolder(HomeVariable());
  if (std::getenv("STANDIN_WAIT") != nullptr) {
    Log("waiting");
    for (;;) ::pause();
  }
}

// Copies like the library: the size is always told, the text only where there is room for it.
void Give(const char* text, char* buffer, std::int32_t& size) {
  size = static_cast<std::int32_t>(std::strlen(text) + 1);
  if (buffer != nullptr) std::memcpy(buffer, text, static_cast<std::size_t>(size));
}

}  // namespace

std::int32_t GetPlaylistCount(std::int32_t) noexcept {
  Log("call " + HomeVariable());
  return 0;
}
PlaylistRecord* OpenPlaylist(std::int32_t, std::int32_t) noexcept {
  return nullptr;
}
std::int32_t GetPlaylistName(std::int32_t, std::int32_t, char*, std::int32_t) noexcept {
  return 0;
}
std::int32_t GetPlaylistKind(const PlaylistRecord*) noexcept {
  return 0;
}

std::int32_t GetSongCount(const PlaylistRecord*) noexcept {
  const char* count = std::getenv("STANDIN_SONGS");
  return count != nullptr ? std::atoi(count) : 2;
}

std::int32_t GetSongInfo(PlaylistRecord*, std::int32_t index, SongInfo* info) noexcept {
  const bool isOdd = index % 2 != 0;
  Give(isOdd ? "second" : "firstly", info->name, info->nameSize);
  Give("", info->album, info->albumSize);
  info->artistSize = isOdd ? 1 : 0;  // a size without a text: the value in the file is no text
  info->genreSize = 0;
  info->locationSize = 0;
  info->totalTime = isOdd ? -5 : 60000;
  info->playCount = index;
  info->trackNumber = 0;
  info->movie = 0;
  return 1;
}

std::int32_t AppendRingtone(const char*) noexcept {
  return 0;
}

std::int32_t GetArtworkCount(const ArtworkHandle*) noexcept {
  return 0;
}
std::int32_t GetArtworkInfo(ArtworkHandle*, std::int32_t, ArtworkInfo*) noexcept {
  return 0;
}
void CloseArtwork(ArtworkHandle*) noexcept {}
ArtworkHandle* OpenArtworkAny(PlaylistRecord*, std::int32_t) noexcept {
  return nullptr;
}
ArtworkHandle* OpenArtworkFile(const char*) noexcept {
  return nullptr;
}

std::int32_t GetSongProperty(const PlaylistRecord*, std::int32_t, const char*, char*,
                             std::int32_t) noexcept {
  return 0;
}
std::int32_t VisitLibraryProperties(PropertyVisitor, void*) noexcept {
  return 0;
}
std::int32_t VisitPlaylistProperties(const PlaylistRecord*, PropertyVisitor, void*) noexcept {
  return 0;
}
std::int32_t VisitSongProperties(const PlaylistRecord*, std::int32_t, PropertyVisitor,
                                 void*) noexcept {
  return 0;  // so that a host asks GetSongInfo
}
std::int32_t FindSongs(const SongInfo*, FindSongsCallback, void*) noexcept {
  return 0;
}
std::int32_t GetLibraryProperty(const char*, char*, std::int32_t) noexcept {
  return 0;
}

#if !defined(STANDIN_INCOMPLETE)
PlaylistRecord* OpenAllSongs() noexcept {
  static PlaylistRecord allSongs;
  return &allSongs;
}
#endif
