#include "host/library/SongReader.h"

#include <array>
#include <cstring>

namespace tavrel::host {
namespace {

// A text of the interface's song record beside its place in ours.
struct TextField {
  char* SongInfo::*text;
  std::int32_t SongInfo::*size;
  std::optional<std::string_view> Song::*result;
};

constexpr std::array kTextFields{
    TextField{&SongInfo::name, &SongInfo::nameSize, &Song::name},
    TextField{&SongInfo::location, &SongInfo::locationSize, &Song::location},
    TextField{&SongInfo::artist, &SongInfo::artistSize, &Song::artist},
    TextField{&SongInfo::album, &SongInfo::albumSize, &Song::album},
    TextField{&SongInfo::genre, &SongInfo::genreSize, &Song::genre},
};

std::size_t Size(std::int32_t size) {
  return size > 0 ? static_cast<std::size_t>(size) : 0;
}

// A size may come without a text (a value in the file that is no text). Room that nothing was
// copied into has no terminator then, because it was filled with this byte.
constexpr int kUntouched = 0xFF;

std::optional<std::string_view> CopiedText(const char* text, std::size_t room) {
  const void* end = std::memchr(text, '\0', room);
  if (end == nullptr) return std::nullopt;
  return std::string_view(text, static_cast<std::size_t>(static_cast<const char*>(end) - text));
}

}  // namespace

const Song& SongReader::Read(PlaylistRecord* playlist, std::int32_t position) {
  // The first call tells the sizes, the second one copies.
  SongInfo info{};
  library_.getSongInfo(playlist, position, &info);
  std::size_t room = 0;
  for (const TextField& field : kTextFields) room += Size(info.*field.size);
  if (buffer_.size() < room) buffer_.resize(room);
  std::memset(buffer_.data(), kUntouched, room);

  char* next = buffer_.data();
  for (const TextField& field : kTextFields) {
    if (info.*field.size <= 0) continue;
    info.*field.text = next;
    next += info.*field.size;
  }
  library_.getSongInfo(playlist, position, &info);

  for (const TextField& field : kTextFields) {
    song_.*field.result =
        info.*field.size <= 0 ? std::nullopt : CopiedText(info.*field.text, Size(info.*field.size));
  }
  song_.totalTime = info.totalTime;
  song_.playCount = info.playCount;
  song_.trackNumber = info.trackNumber;
  song_.isMovie = info.movie != 0;
  return song_;
}

}  // namespace tavrel::host
