// Songs in JSON.
#pragma once

#include "host/Commands.h"
#include "host/library/SongReader.h"
#include "host/output/Json.h"

namespace tavrel::host {

// What a song is, without where it stands.
[[nodiscard]] Json JsonSong(const Song& song, const Session& session);

}  // namespace tavrel::host
