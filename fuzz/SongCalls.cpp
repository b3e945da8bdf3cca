// A life's calls for lists, songs and their properties.
#include <memory>
#include <string>
#include <vector>

#include "fuzz/FuzzTarget.h"
#include "fuzz/Life.h"

namespace tavrel::fuzz {

void Life::ListPlaylist() {
  const std::int32_t group = choices_.Position(kGroups);
  const std::int32_t index = choices_.Position(GetPlaylistCount(group));
  const auto room = static_cast<std::int32_t>(choices_.Below(20));
  const auto name = std::make_unique<char[]>(static_cast<std::size_t>(room));
  GetPlaylistName(group, index, choices_.Below(4) == 0 ? nullptr : name.get(), room);
  PlaylistRecord* playlist = OpenPlaylist(group, index);
  (void)GetPlaylistKind(playlist);
  (void)GetSongCount(playlist);
  Require(ClosePlaylist(playlist) == (playlist != nullptr ? 1 : 0), "A playlist does not close");
}

void Life::ReadSong() {
  PlaylistRecord* playlist = AnyPlaylist();
  const std::int32_t index = choices_.Position(GetSongCount(playlist));
  SongInfo sizes{};
  if (GetSongInfo(playlist, index, &sizes) == 0) return;
  SongInfo info{};
  std::vector<std::unique_ptr<char[]>> buffers;
  const auto add = [&](char*& text, std::int32_t size) {
    if (choices_.Below(4) == 0) return;
    buffers.push_back(std::make_unique<char[]>(static_cast<std::size_t>(size)));
    text = buffers.back().get();
  };
  add(info.name, sizes.nameSize);
  add(info.location, sizes.locationSize);
  add(info.artist, sizes.artistSize);
  add(info.album, sizes.albumSize);
  add(info.genre, sizes.genreSize);
  Require(GetSongInfo(playlist, index, &info) > 0, "A song has gone");
}

void Life::ReadProperty() {
  const PlaylistRecord* playlist = AnyPlaylist();
  const std::int32_t index = choices_.Position(GetSongCount(playlist));
  const std::string key = choices_.Text();
  const auto room = static_cast<std::int32_t>(choices_.Below(20));
  const auto text = std::make_unique<char[]>(static_cast<std::size_t>(room));
  char* buffer = choices_.Below(4) == 0 ? nullptr : text.get();
  const bool visits = choices_.Below(2) == 0;
  const PropertyVisitor visitor = choices_.Below(16) == 1 ? nullptr : Look;
  ++depth_;
  switch (choices_.Below(3)) {
    case 0:
      visits ? VisitSongProperties(playlist, index, visitor, this)
             : GetSongProperty(playlist, index, key.c_str(), buffer, room);
      break;
    case 1:
      visits ? VisitPlaylistProperties(playlist, visitor, this)
             : GetPlaylistProperty(playlist, key.c_str(), buffer, room);
      break;
    default:
      visits ? VisitLibraryProperties(visitor, this)
             : GetLibraryProperty(key.c_str(), buffer, room);
  }
  --depth_;
}

// What is shown stays as it is, whatever is called meanwhile.
std::int32_t Life::Look(const char* key, const char* text, const char* type, void* context) {
  Life& life = *static_cast<Life*>(context);
  const std::string before = std::string(key) + type + (text == nullptr ? "" : text);
  const std::size_t choice = life.choices_.Below(16);
  if (choice == 1 && life.depth_ < 3) life.Call();
  Require(before == std::string(key) + type + (text == nullptr ? "" : text),
          "What a visitor was shown has changed");
  return choice == 2 ? 0 : 1;
}

}  // namespace tavrel::fuzz
