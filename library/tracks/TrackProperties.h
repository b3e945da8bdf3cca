// A track's properties, read from its dictionary when they are first asked for.
#pragma once

#include "library/State.h"
#include "library/tracks/TrackTable.h"
#include "tavrel/tavrel.h"

namespace tavrel {

// Reads a pending track's properties, in one walk over its dictionary. Once done, the track is no longer
// pending.
// loaded: the loaded library; the texts of its own tracks belong to it and are released with it. May be
//         none.
void LoadTrackProperties(TrackRecord& track, LibraryState* loaded) noexcept;

// The same in its plainest form: one by one, as any caller of ReadProperty() would. The texts are of
// the malloc family and belong to whom the record belongs to. It serves records that are not the
// library's own, and is what the faster form is compared with.
void LoadTrackPropertiesPlainly(TrackRecord& track) noexcept;

// Copies a track's properties for a host, which must have been loaded: every size and number, and
// those texts whose pointer is not null.
// Result: the size of the record and of all texts, in bytes.
std::int32_t CopySongInfo(const SongInfo& song, SongInfo& info) noexcept;

}  // namespace tavrel
