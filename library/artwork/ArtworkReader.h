// Reads the images of an artwork cache file, block by block.
#pragma once

#include <cstdint>
#include <optional>

#include "library/artwork/ArtworkRecords.h"

namespace tavrel {

struct FoundImage {
  std::int32_t format;
  std::int32_t width;
  std::int32_t height;
  std::int32_t size;         // of its bytes; negative in a block that is too short for its header
  std::uint32_t fileOffset;  // where its bytes begin
};

// Reads a file's header, its length in host order.
// Result: where the first block begins, before the file's start for some lengths; none when the
//         file does not begin with a header.
[[nodiscard]] std::optional<std::int64_t> ReadArtworkHeader(int file,
                                                            ArtworkHeader& header) noexcept;

class ArtworkReader {
 public:
  ArtworkReader(int file, std::int64_t firstBlock, ArtworkLayouts layouts) noexcept
      : file_(file), position_(firstBlock), layouts_(layouts) {}

  // The next image that is known; none at the end.
  [[nodiscard]] std::optional<FoundImage> Next() noexcept;

 private:
  int file_;
  std::int64_t position_;  // of the next block; negative when there is none
  ArtworkLayouts layouts_;
};

}  // namespace tavrel
