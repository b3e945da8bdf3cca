// Songs in JSON.
#pragma once

#include "host/Commands.h"
#include "host/Json.h"
#include "host/SongReader.h"

namespace tavrel::host {

// What a song is, without where it stands.
[[nodiscard]] Json JsonSong(const Song& song, const Session& session);

}  // namespace tavrel::host
