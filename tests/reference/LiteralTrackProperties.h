// A track's properties as the rules state them, step by step: ten walks over its dictionary, a new text of
// the malloc family for each, every URL decoded by the general rule. What the library's own readers are
// compared with, by tests for what they read and by benchmarks for the time they take.
#pragma once

#include "library/tracks/TrackTable.h"

namespace tavrel::reference {

// Reads a pending track's properties. Its texts are the caller's, who releases them with free(); the track
// is no longer pending. May throw std::bad_alloc.
void LoadTrackPropertiesLiterally(TrackRecord& track);

}  // namespace tavrel::reference
