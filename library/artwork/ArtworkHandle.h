// Artwork handles: an open cache file and the list of its images. The images themselves stay in the
// file until a host asks for them.
#pragma once

#include <cstdint>

#include "library/artwork/ArtworkRecords.h"
#include "tavrel/tavrel.h"

namespace tavrel {

// Opens a cache file and lists its images.
// path:   NUL-terminated, borrowed.
// Result: a handle to be released with CloseArtworkHandle(); null when there is no regular file that
//         begins with a header, or memory is exhausted before the first block. Damaged blocks are
//         lost, but not what stands before them.
[[nodiscard]] ArtworkHandle* OpenArtworkHandle(const char* path, ArtworkLayouts layouts) noexcept;

// Releases the handle and closes its file; null is allowed.
void CloseArtworkHandle(ArtworkHandle* handle) noexcept;

// As GetArtworkInfo().
std::int32_t ReadArtworkInfo(const ArtworkHandle* handle, std::int32_t index,
                             ArtworkInfo* info) noexcept;

}  // namespace tavrel
