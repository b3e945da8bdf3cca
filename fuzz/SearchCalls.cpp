// A life's searches.
#include <array>
#include <string>

#include "fuzz/FuzzTarget.h"
#include "fuzz/Life.h"
#include "library/playlists/PlaylistTable.h"
#include "library/tracks/TrackTable.h"

namespace tavrel::fuzz {
namespace {

// A match is a song, and the playlist the first that holds it.
void RequireFirst(PlaylistRecord* playlist, std::int32_t index) {
  SongInfo info{};
  Require(GetSongInfo(playlist, index, &info) > 0, "A match is no song");
  std::int32_t first = -1;
  const std::int32_t trackId = playlist->tracks[index]->trackId;
  Require(GetPlaylistByTrackId(trackId, &first) == playlist && first == index,
          "A match is told to stand elsewhere");
}

}  // namespace

std::int32_t Life::Listen(PlaylistRecord* playlist, std::int32_t index, void* context) {
  Life& life = *static_cast<Life*>(context);
  if (playlist != nullptr) RequireFirst(playlist, index);
  const std::size_t choice = life.choices_.Below(16);
  if (choice == 1 && life.depth_ < 3) life.Call();
  return choice == 2 ? 0 : 1;
}

// A match is a song.
std::int32_t Life::Hear(std::int32_t index, void* context) {
  Life& life = *static_cast<Life*>(context);
  SongInfo info{};
  Require(GetSongInfo(OpenAllSongs(), index, &info) > 0, "A match is no song");
  const std::size_t choice = life.choices_.Below(16);
  if (choice == 1 && life.depth_ < 3) life.Call();
  return choice == 2 ? 0 : 1;
}

void Life::Search() {
  std::array<std::string, 3> texts = {choices_.Text(), choices_.Text(), choices_.Text()};
  const auto given = [this](std::string& text) {
    return choices_.Below(4) == 0 ? nullptr : text.data();
  };
  SongInfo terms{};
  terms.name = given(texts[0]);
  terms.artist = given(texts[1]);
  terms.album = given(texts[2]);
  const SongInfo* asked = choices_.Below(16) == 1 ? nullptr : &terms;
  const std::size_t way = choices_.Below(16);
  ++depth_;
  if (way < 8) {
    SearchSong(asked, way == 1 ? nullptr : Listen, this);
  } else {
    FindSongs(asked, way == 9 ? nullptr : Hear, this);
  }
  --depth_;
}

}  // namespace tavrel::fuzz
