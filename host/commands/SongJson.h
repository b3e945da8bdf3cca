// Songs in JSON.
#pragma once

#include "host/library/Session.h"
#include "host/library/SongReader.h"
#include "host/output/Json.h"

namespace tavrel::host {

// Adds what a song is, behind where it stands.
void AddSong(JsonObject& object, const Song& song, const Session& session);

}  // namespace tavrel::host
