// Artwork cache files: the walk over the blocks goes forward only, and the reader of every layout
// loses no image that the one of the usual layout finds.
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "fuzz/FuzzTarget.h"
#include "library/artwork/ArtworkHandle.h"

using tavrel::ArtworkLayouts;
using tavrel::fuzz::Require;

namespace {

// A file that is written anew for each input.
class InputFile {
 public:
  InputFile() : path_(P_tmpdir "/tavrel-fuzz-XXXXXX"), descriptor_(mkstemp(path_.data())) {
    Require(descriptor_ >= 0, "There is no temporary file");
  }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile() {
    close(descriptor_);
    unlink(path_.c_str());
  }
  const char* Write(const std::uint8_t* data, std::size_t size) const {
    const bool written = ftruncate(descriptor_, 0) == 0 &&
                         pwrite(descriptor_, data, size, 0) == static_cast<ssize_t>(size);
    Require(written, "The input cannot be written");
    return path_.c_str();
  }

 private:
  std::string path_;
  int descriptor_;
};

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

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const InputFile file;
  const char* path = file.Write(data, size);
  const auto usual = Positions(path, ArtworkLayouts::Usual);
  const auto every = Positions(path, ArtworkLayouts::Every);
  const bool ascend = std::is_sorted(usual.begin(), usual.end(), std::less_equal<>());
  Require(ascend, "An image stands before the one that it follows");
  Require(every.size() >= usual.size(), "An image of the usual layout is lost");
  return 0;
}
