// The artwork catalogue: the path of every cache file below the artwork folder, listed once.
#pragma once

#include <cstddef>
#include <cstdint>

#include "library/State.h"

struct ArtworkFileEntry {
  char* path;             // full path, owned
  std::int32_t pathSize;  // terminator included
};

#if defined(__LP64__)
static_assert(sizeof(ArtworkFileEntry) == 16);
static_assert(offsetof(ArtworkFileEntry, pathSize) == 8);
#endif

namespace tavrel {

// Appends the cache files that the artwork folder holds now to the catalogue.
void CreateArtworkCatalogue(LibraryState& state) noexcept;

// Releases the catalogue and its index; the catalogue's fields are not reset. Nothing happens the
// second time.
void DestroyArtworkCatalogue(LibraryState& state) noexcept;

}  // namespace tavrel
