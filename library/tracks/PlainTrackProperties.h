// A track's properties in their plainest form: read one by one, as any caller of ReadSongProp()
// would. It serves records that are not the library's own, and is what the faster form is compared
// with.
#pragma once

#include "library/tracks/TrackTable.h"

namespace tavrel {

// Reads a pending track's properties from its dictionary. Once done, the track is no longer pending.
// Its texts are of the malloc family and belong to whom the record belongs to.
void LoadTrackPropertiesPlainly(TrackRecord& track) noexcept;

}  // namespace tavrel
