// The reader of artwork cache files, on any bytes.
#include "library/ArtworkFile.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace {

using tavrel::ArtworkLayouts;

void Require(bool holds) {
  if (!holds) std::abort();
}

// Opens the file and asks for every image. Result: the images' positions.
std::vector<std::uint32_t> Positions(const std::string& path, ArtworkLayouts layouts) {
  std::vector<std::uint32_t> positions;
  ArtworkHandle* handle = tavrel::OpenArtworkHandle(path.c_str(), layouts);
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const int file = memfd_create("artwork", MFD_CLOEXEC);
  static const std::string path = "/proc/self/fd/" + std::to_string(file);
  Require(ftruncate(file, 0) == 0);
  Require(pwrite(file, bytes, size, 0) == static_cast<ssize_t>(size));
  const auto original = Positions(path, ArtworkLayouts::Original);
  const auto every = Positions(path, ArtworkLayouts::Every);
  // The walk goes forward only, and the wider reader loses no block that the original one finds.
  Require(std::is_sorted(original.begin(), original.end(), std::less_equal<>()));
  Require(every.size() >= original.size());
  return 0;
}
