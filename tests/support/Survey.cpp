#include "tests/support/Survey.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <ostream>

namespace tavrel::test {

namespace {

constexpr char kUntouched = '\xA5';
constexpr std::size_t kGuard = 16;
constexpr std::int32_t kRingtoneKind = 55;

// A buffer with guard bytes around it.
class GuardedBuffer {
 public:
  explicit GuardedBuffer(std::int32_t size)
      : bytes_(static_cast<std::size_t>(size) + 2 * kGuard, kUntouched) {}

  char* data() { return bytes_.data() + kGuard; }

  // The text in the buffer; none when nothing was written. Nothing outside may have been written.
  [[nodiscard]] std::optional<std::string> Text() const {
    const std::string guard(kGuard, kUntouched);
    EXPECT_EQ(bytes_.substr(0, kGuard), guard);
    EXPECT_EQ(bytes_.substr(bytes_.size() - kGuard), guard);
    const std::string inside = bytes_.substr(kGuard, bytes_.size() - 2 * kGuard);
    if (inside.find_first_not_of(kUntouched) == std::string::npos) return std::nullopt;
    EXPECT_NE(inside.find('\0'), std::string::npos) << "not terminated: " << inside;
    return std::string(inside.c_str());
  }

 private:
  std::string bytes_;
};

SongInfo UntouchedInfo() {
  SongInfo info;
  std::memset(&info, kUntouched, sizeof info);
  info.name = info.location = info.artist = info.album = info.genre = nullptr;
  return info;
}

// Every text of a song: where the host puts it, its size, and where the survey keeps it.
struct TextField {
  char* SongInfo::*buffer;
  std::int32_t SongInfo::*size;
  SeenText SeenSong::*seen;
};
constexpr TextField kTextFields[] = {
    {&SongInfo::name, &SongInfo::nameSize, &SeenSong::name},
    {&SongInfo::location, &SongInfo::locationSize, &SeenSong::location},
    {&SongInfo::artist, &SongInfo::artistSize, &SeenSong::artist},
    {&SongInfo::album, &SongInfo::albumSize, &SeenSong::album},
    {&SongInfo::genre, &SongInfo::genreSize, &SeenSong::genre},
};

SeenText SeeName(const HostFunctions& library, std::int32_t group, std::int32_t index) {
  const std::int32_t size = library.getPlaylistName(group, index, nullptr, 1 << 20);
  EXPECT_GE(size, 0);
  if (size > 0) {
    GuardedBuffer tooSmall(size - 1);
    EXPECT_EQ(library.getPlaylistName(group, index, tooSmall.data(), size - 1), size);
    EXPECT_EQ(tooSmall.Text(), std::nullopt);
  }
  GuardedBuffer buffer(size);
  EXPECT_EQ(library.getPlaylistName(group, index, buffer.data(), size), size);
  return {size, buffer.Text()};
}

}  // namespace

void PrintTo(const SeenText& seen, std::ostream* stream) {
  *stream << seen.size << " \"" << seen.text.value_or("(no text)") << '"';
}

SeenSong SeeSong(const HostFunctions& library, PlaylistRecord* playlist, std::int32_t index) {
  SongInfo sizes = UntouchedInfo();
  const std::int32_t reserved = sizes.reserved;
  const std::int32_t total = library.getSongInfo(playlist, index, &sizes);

  std::vector<GuardedBuffer> buffers;
  buffers.reserve(std::size(kTextFields));
  SongInfo info = UntouchedInfo();
  std::int32_t sum = sizeof(SongInfo);
  for (const TextField& field : kTextFields) {
    EXPECT_EQ(sizes.*field.buffer, nullptr);
    EXPECT_GE(sizes.*field.size, 0);
    sum += sizes.*field.size;
    buffers.emplace_back(sizes.*field.size);
    info.*field.buffer = buffers.back().data();
  }
  EXPECT_EQ(total, sum);
  std::vector<char*> pointers;
  for (const TextField& field : kTextFields) pointers.push_back(info.*field.buffer);
  EXPECT_EQ(library.getSongInfo(playlist, index, &info), total);

  SeenSong song;
  for (std::size_t i = 0; i < std::size(kTextFields); ++i) {
    const TextField& field = kTextFields[i];
    EXPECT_EQ(info.*field.buffer, pointers[i]);
    EXPECT_EQ(info.*field.size, sizes.*field.size);
    song.*field.seen = {sizes.*field.size, buffers[i].Text()};
  }
  EXPECT_EQ(sizes.reserved, reserved);
  EXPECT_EQ(info.reserved, reserved);
  song.totalTime = info.totalTime;
  song.playCount = info.playCount;
  song.trackNumber = info.trackNumber;
  song.movie = info.movie;
  return song;
}

std::vector<SeenSong> SeeSongs(const HostFunctions& library, PlaylistRecord* playlist) {
  std::vector<SeenSong> songs;
  const std::int32_t count = library.getSongCount(playlist);
  EXPECT_GE(count, 0);
  for (std::int32_t i = 0; i < count; ++i) songs.push_back(SeeSong(library, playlist, i));
  SongInfo info = UntouchedInfo();
  EXPECT_EQ(library.getSongInfo(playlist, count, &info), 0);
  EXPECT_EQ(library.getSongInfo(playlist, -1, &info), 0);
  return songs;
}

std::vector<SeenPlaylist> SeePlaylists(const HostFunctions& library) {
  std::vector<SeenPlaylist> playlists;
  EXPECT_EQ(library.getPlaylistCount(-1), 0);
  EXPECT_EQ(library.getPlaylistCount(3), 0);
  for (std::int32_t group = 0; group < 3; ++group) {
    const std::int32_t count = library.getPlaylistCount(group);
    EXPECT_EQ(library.openPlaylist(group, count), nullptr);
    EXPECT_EQ(library.openPlaylist(group, -1), nullptr);
    for (std::int32_t index = 0; index < count; ++index) {
      SeenPlaylist seen;
      seen.handle = library.openPlaylist(group, index);
      EXPECT_NE(seen.handle, nullptr);
      seen.group = group;
      seen.index = index;
      seen.kind = library.getPlaylistKind(seen.handle);
      seen.name = SeeName(library, group, index);
      const bool ownRingtones = group == 0 && index == count - 1 && seen.kind == kRingtoneKind;
      if (ownRingtones && seen.name.text == "Ringtones") continue;
      seen.songs = SeeSongs(library, seen.handle);
      EXPECT_EQ(library.closePlaylist(seen.handle), 1);
      playlists.push_back(seen);
    }
  }
  return playlists;
}

std::vector<std::string> Summaries(const std::vector<SeenPlaylist>& playlists) {
  std::vector<std::string> summaries;
  for (const SeenPlaylist& playlist : playlists) {
    summaries.push_back(std::to_string(playlist.group) + ":" + std::to_string(playlist.kind) + " " +
                        playlist.name.text.value_or("-") + " " +
                        std::to_string(playlist.songs.size()));
  }
  return summaries;
}

std::vector<std::string> SongNames(const HostFunctions& library, PlaylistRecord* playlist) {
  std::vector<std::string> names;
  for (const SeenSong& song : SeeSongs(library, playlist)) {
    names.push_back(song.name.text.value_or("-"));
  }
  return names;
}

PlaylistRecord* PlaylistNamed(const HostFunctions& library, const std::string& name) {
  for (const SeenPlaylist& playlist : SeePlaylists(library)) {
    if (playlist.name.text == name) return playlist.handle;
  }
  return nullptr;
}

}  // namespace tavrel::test
