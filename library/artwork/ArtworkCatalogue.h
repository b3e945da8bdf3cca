// The artwork catalogue: the path of every cache file below the artwork folder, listed once.
#pragma once

#include "library/State.h"
#include "library/artwork/ArtworkRecords.h"

namespace tavrel {

// Appends the cache files that the artwork folder holds now to the catalogue.
void CreateArtworkCatalogue(LibraryState& state) noexcept;

// Releases the catalogue and its index; the catalogue's fields are not reset. Nothing happens the
// second time.
void DestroyArtworkCatalogue(LibraryState& state) noexcept;

}  // namespace tavrel
