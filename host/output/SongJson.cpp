#include "host/output/SongJson.h"

namespace tavrel::host {

Json JsonSong(const Song& song, const Session& session) {
  std::optional<std::string> location;
  if (song.location) location = UserPath(session, *song.location);
  return {{"name", JsonText(song.name)},     {"artist", JsonText(song.artist)},
          {"album", JsonText(song.album)},   {"genre", JsonText(song.genre)},
          {"trackNumber", song.trackNumber}, {"totalTime", song.totalTime},
          {"playCount", song.playCount},     {"movie", song.isMovie},
          {"location", JsonText(location)}};
}

}  // namespace tavrel::host
