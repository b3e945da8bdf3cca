// The records of artwork: an entry of the catalogue; a cache file's header, the list of its images, the
// handle that holds both.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tavrel/tavrel.h"

struct ArtworkFileEntry {
  char* path;             // full path, owned
  std::int32_t pathSize;  // terminator included
};

struct ArtworkHeader {
  std::uint32_t length;  // of the whole header block
  char tag[4];
  std::uint8_t rest[20];  // kept as read
};

// Begins with the fields of an ArtworkInfo, in its order; the next one follows where that record would
// only have padding.
//
//   0        4       8        12    16      24         28           32
//   | format | width | height |     | data  | dataSize | fileOffset |
struct ArtworkImage {
  std::int32_t format;
  std::int32_t width;
  std::int32_t height;
  std::uint8_t* data;  // always null: the bytes are in the file
  std::int32_t dataSize;
  std::uint32_t fileOffset;
};

struct ArtworkHandle {
  std::intptr_t file;  // the descriptor plus 1, so that 0 is "no file" and descriptor 0 is one
  ArtworkHeader header;
  ArtworkImage** images;  // in file order
  std::int32_t capacity;
  std::int32_t count;
};

static_assert(sizeof(ArtworkHeader) == 28);
static_assert(offsetof(ArtworkImage, width) == offsetof(ArtworkInfo, width));
static_assert(offsetof(ArtworkImage, height) == offsetof(ArtworkInfo, height));
static_assert(offsetof(ArtworkImage, data) == offsetof(ArtworkInfo, data));
static_assert(offsetof(ArtworkImage, dataSize) == offsetof(ArtworkInfo, dataSize));
#if defined(__LP64__)
static_assert(sizeof(ArtworkFileEntry) == 16);
static_assert(offsetof(ArtworkFileEntry, pathSize) == 8);
static_assert(sizeof(ArtworkInfo) == 32);
static_assert(offsetof(ArtworkInfo, width) == 4);
static_assert(offsetof(ArtworkInfo, height) == 8);
static_assert(offsetof(ArtworkInfo, data) == 16);
static_assert(offsetof(ArtworkInfo, dataSize) == 24);
static_assert(sizeof(ArtworkImage) == 32);
static_assert(offsetof(ArtworkImage, fileOffset) == 28);
static_assert(sizeof(ArtworkHandle) == 56);
static_assert(offsetof(ArtworkHandle, header) == 8);
static_assert(offsetof(ArtworkHandle, images) == 40);
static_assert(offsetof(ArtworkHandle, capacity) == 48);
static_assert(offsetof(ArtworkHandle, count) == 52);
#endif

namespace tavrel {

enum class ArtworkLayouts {
  Usual,  // the one layout and the two codes of the core interface
  Every,  // what is known from real caches as well
};

// The descriptor of the handle's file; negative when none is open.
[[nodiscard]] inline int ArtworkDescriptor(const ArtworkHandle& handle) noexcept {
  return static_cast<int>(handle.file) - 1;
}

}  // namespace tavrel
