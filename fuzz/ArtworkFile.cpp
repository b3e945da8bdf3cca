// Artwork cache files: the walk over the blocks goes forward only, and the reader of every layout
// loses no image that the one of the usual layout finds.
#include <algorithm>
#include <functional>
#include <vector>

#include "fuzz/FuzzTarget.h"
#include "fuzz/InputFile.h"
#include "library/artwork/ArtworkHandle.h"

using tavrel::ArtworkLayouts;
using tavrel::fuzz::Require;

namespace {

// The positions of the images, after each of them has been asked for.
std::vector<std::uint32_t> Positions(const char* path, ArtworkLayouts layouts) {
  std::vector<std::uint32_t> positions;
  ArtworkHandle* handle = tavrel::OpenArtworkHandle(path, layouts);
  std::vector<std::uint8_t> buffer(4096);
  for (std::int32_t i = 0; i < GetArtworkCount(handle); ++i) {
    ArtworkInfo info{};
    info.data = buffer.data();
    info.dataSize = static_cast<std::int32_t>(buffer.size());
    GetArtworkInfo(handle, i, &info);
    positions.push_back(handle->images[i]->fileOffset);
  }
  CloseArtwork(handle);
  return positions;
}

void ReadCacheFile(std::string_view input) {
  static const tavrel::fuzz::InputFile file;
  file.Write(input);
  const auto usual = Positions(file.path().c_str(), ArtworkLayouts::Usual);
  const auto every = Positions(file.path().c_str(), ArtworkLayouts::Every);
  const bool ascend = std::is_sorted(usual.begin(), usual.end(), std::less_equal<>());
  Require(ascend, "An image stands before the one that it follows");
  Require(every.size() >= usual.size(), "An image of the usual layout is lost");
}

const tavrel::fuzz::Target artworkTarget("artwork", ReadCacheFile);

}  // namespace
