#include "host/commands/SongJson.h"

namespace tavrel::host {

void AddSong(JsonObject& object, const Song& song, const Session& session) {
  std::optional<std::string> location;
  if (song.location) location = UserPath(session, *song.location);
  object.Add({"name", song.name});
  object.Add({"artist", song.artist});
  object.Add({"album", song.album});
  object.Add({"genre", song.genre});
  object.Add({"trackNumber", song.trackNumber});
  object.Add({"totalTime", song.totalTime});
  object.Add({"playCount", song.playCount});
  object.Add({"movie", song.isMovie});
  object.Add({"location", location});
}

}  // namespace tavrel::host
