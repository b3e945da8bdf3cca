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
