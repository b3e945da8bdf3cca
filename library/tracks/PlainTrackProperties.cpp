#include "library/tracks/PlainTrackProperties.h"

#include "library/file/PersistentId.h"
#include "library/file/PropertyList.h"
#include "system/Memory.h"

void tavrel::LoadTrackPropertiesPlainly(TrackRecord& track) noexcept {
  const TBXMLElement* dict = track.pendingDict;
  SongInfo& info = track.info;
  ReadSongProp(dict, "Name", &info.name, &info.nameSize, SONGPROP_TEXT);
  ReadSongProp(dict, "Location", &info.location, &info.locationSize, SONGPROP_TEXT | SONGPROP_URL);
  ReadSongProp(dict, "Artist", &info.artist, &info.artistSize, SONGPROP_TEXT);
  ReadSongProp(dict, "Album", &info.album, &info.albumSize, SONGPROP_TEXT);
  ReadSongProp(dict, "Genre", &info.genre, &info.genreSize, SONGPROP_TEXT);
  ReadSongProp(dict, "Total Time", nullptr, &info.totalTime, 0);
  ReadSongProp(dict, "Play Count", nullptr, &info.playCount, 0);
  ReadSongProp(dict, "Movie", nullptr, &info.movie, 0);
  ReadSongProp(dict, "Track Number", nullptr, &info.trackNumber, 0);

  char* id = nullptr;
  std::int32_t idSize = 0;
  ReadSongProp(dict, "Persistent ID", &id, &idSize, SONGPROP_TEXT);
  PersistentId2Buf(id, track.persistentId);
  system::Release(id);
  track.pendingDict = nullptr;
}
