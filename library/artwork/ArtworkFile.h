// Artwork cache files: the reader that lists a file's images, and the handle that it makes. The
// images themselves stay in the file until a host asks for them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tavrel/tavrel.h"

struct ArtworkHeader {
  std::uint32_t length;  // of the whole header block
  char tag[4];
  std::uint8_t rest[20];  // kept as read
};

struct ArtworkImage {
  ArtworkInfo info;  // its `data` is always null: the bytes are in the file
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
#if defined(__LP64__)
static_assert(sizeof(ArtworkInfo) == 32);
static_assert(offsetof(ArtworkInfo, width) == 4);
static_assert(offsetof(ArtworkInfo, height) == 8);
static_assert(offsetof(ArtworkInfo, data) == 16);
static_assert(offsetof(ArtworkInfo, dataSize) == 24);
static_assert(sizeof(ArtworkImage) == 40);
static_assert(offsetof(ArtworkImage, fileOffset) == 32);
static_assert(sizeof(ArtworkHandle) == 56);
static_assert(offsetof(ArtworkHandle, header) == 8);
static_assert(offsetof(ArtworkHandle, images) == 40);
static_assert(offsetof(ArtworkHandle, capacity) == 48);
static_assert(offsetof(ArtworkHandle, count) == 52);
#endif

namespace tavrel {

enum class ArtworkLayouts {
  Usual,  // the one layout and the two codes that OpenArtwork reads
  Every,  // what is known from real caches as well
};

// Lists the images of a cache file.
// path:   NUL-terminated, borrowed.
// Result: a handle to be released with CloseArtwork(); null when there is no regular file that
//         begins with a header, or memory is exhausted before the first block. Damaged blocks are
//         lost, but not what stands before them.
[[nodiscard]] ArtworkHandle* OpenArtworkHandle(const char* path, ArtworkLayouts layouts) noexcept;

// The descriptor of the handle's file; negative when none is open.
[[nodiscard]] inline int ArtworkDescriptor(const ArtworkHandle& handle) noexcept {
  return static_cast<int>(handle.file) - 1;
}

}  // namespace tavrel
