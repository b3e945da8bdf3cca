// A track's properties, read from its dictionary when they are first asked for.
#pragma once

#include "library/tracks/TrackTable.h"

namespace tavrel {

// As LoadTrackPropertiesPlainly(), but the texts of the loaded library's own tracks belong to the
// library and are released with it.
void LoadTrackProperties(TrackRecord& track) noexcept;

}  // namespace tavrel
