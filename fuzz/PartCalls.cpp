// A life's calls of the functions that others are made of: readers, builders and destroyers.
#include <stdlib.h>

#include <array>
#include <memory>
#include <string>

#include "fuzz/Life.h"
#include "library/playlists/PlaylistTable.h"
#include "xml/TBXML.h"

namespace tavrel::fuzz {

void Life::Read() {
  const std::string text = choices_.Text();
  std::array<std::uint8_t, 8> id{};
  PersistentId2Buf(choices_.Below(8) == 1 ? nullptr : text.c_str(), id.data());
  const std::size_t room = choices_.Below(16);
  const auto decoded = std::make_unique<char[]>(room);
  RestoreXMLEscChar(decoded.get(), text.c_str(), static_cast<std::int32_t>(room));
  std::int32_t index = 0;
  (void)GetPlaylistByTrackId(choices_.Position(8), choices_.Below(2) == 0 ? nullptr : &index);
}

void Life::ReadDictionary() {
  constexpr const char* kKeys[] = {"Name", "Location", "Track ID", "Tracks", "Persistent ID"};
  const TBXMLElement* dict = AnyElement();
  const std::size_t known = choices_.Below(std::size(kKeys) + 1);
  const std::string key = known < std::size(kKeys) ? kKeys[known] : choices_.Text();
  char* text = nullptr;
  std::int32_t value = 0;
  ReadSongProp(dict, key.c_str(), &text, &value, static_cast<std::int32_t>(choices_.Below(8)));
  free(text);
  FilterPropMatch(dict, key.c_str(), choices_.Text().c_str());
}

// Those builders that may be called again, and the destroyers that builders follow.
void Life::Rebuild() {
  if (depth_ > 0) return;
  switch (choices_.Below(4)) {
    case 0:
      CreateRingtoneArray();
      return;
    case 1:
      DestroyRingtoneArray();
      return;
    case 2:
      DestroyArtworkArray();
      CreateArtworkArray();
      return;
    default:
      delete OpenXML();
  }
}

// A playlist of the caller's own.
void Life::FillPlaylist() {
  PlaylistRecord playlist{};
  CreatePlaylistTrack(choices_.Below(8) == 1 ? nullptr : &playlist, AnyElement());
  for (std::int32_t i = -1; i <= playlist.count; ++i) {
    SongInfo info{};
    GetSongInfo(&playlist, i, &info);
  }
  free(playlist.tracks);
}

}  // namespace tavrel::fuzz
