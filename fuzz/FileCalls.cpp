// A life's calls for artwork and ringtones.
#include <memory>
#include <string>

#include "fuzz/Life.h"

namespace tavrel::fuzz {

void Life::OpenOrCloseArtwork() {
  ArtworkHandle*& handle = artwork_[choices_.Below(artwork_.size())];
  CloseArtwork(handle);
  PlaylistRecord* playlist = AnyPlaylist();
  const std::int32_t index = choices_.Position(GetSongCount(playlist));
  const std::size_t way = choices_.Below(4);
  handle = nullptr;
  if (way == 1) handle = OpenArtwork(playlist, index);
  if (way == 2) handle = OpenArtworkAny(playlist, index);
  if (way == 3) handle = OpenArtworkFile(choices_.Text().c_str());
}

void Life::ReadArtwork() {
  ArtworkHandle* handle = artwork_[choices_.Below(artwork_.size())];
  const std::size_t room = choices_.Below(128);
  const auto bytes = std::make_unique<std::uint8_t[]>(room);
  ArtworkInfo info{};
  info.data = choices_.Below(4) == 0 ? nullptr : bytes.get();
  info.dataSize = static_cast<std::int32_t>(room);
  GetArtworkInfo(handle, choices_.Position(GetArtworkCount(handle)), &info);
}

void Life::CloseAll() {
  for (ArtworkHandle*& handle : artwork_) {
    CloseArtwork(handle);
    handle = nullptr;
  }
}

// Each starts a program: most inputs must do without, or there would be few of them.
void Life::Import() {
  static std::size_t imports = 0;
  if (imports > 16 + number_ / 256) return;
  ++imports;
  const std::size_t runner = choices_.Below(3);
  const std::string path = choices_.Text();
  surroundings_.Import(runner, choices_.Below(8) == 1 ? nullptr : path.c_str());
}

}  // namespace tavrel::fuzz
