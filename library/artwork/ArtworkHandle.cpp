#include "library/artwork/ArtworkHandle.h"

#include <unistd.h>

#include "library/TableAppender.h"
#include "library/artwork/ArtworkReader.h"
#include "system/Files.h"
#include "system/Memory.h"

namespace tavrel {
namespace {

// False when memory is exhausted.
bool Append(const FoundImage& found, TableAppender<ArtworkImage>& images) noexcept {
  if (!images.Reserve()) return false;
  auto* image = static_cast<ArtworkImage*>(system::AllocateZeroed(sizeof(ArtworkImage)));
  if (image == nullptr) return false;
  image->format = found.format;
  image->width = found.width;
  image->height = found.height;
  image->dataSize = found.size;
  image->fileOffset = found.fileOffset;
  images.Append(image);
  return true;
}

// False when the file does not begin with a header.
bool ReadFile(ArtworkHandle& handle, ArtworkLayouts layouts) noexcept {
  const int file = ArtworkDescriptor(handle);
  const auto firstBlock = file < 0 ? std::nullopt : ReadArtworkHeader(file, handle.header);
  if (!firstBlock) return false;
  TableAppender<ArtworkImage> images(handle.images, handle.capacity, handle.count);
  ArtworkReader reader(file, *firstBlock, layouts);
  while (const auto found = reader.Next()) {
    if (!Append(*found, images)) break;
  }
  return true;
}

}  // namespace

ArtworkHandle* OpenArtworkHandle(const char* path, ArtworkLayouts layouts) noexcept {
  auto* handle = static_cast<ArtworkHandle*>(system::AllocateZeroed(sizeof(ArtworkHandle)));
  if (handle == nullptr) return nullptr;
  handle->file = system::OpenRegularFile(path).Release() + 1;
  if (ReadFile(*handle, layouts)) return handle;
  CloseArtworkHandle(handle);
  return nullptr;
}

void CloseArtworkHandle(ArtworkHandle* handle) noexcept {
  if (handle == nullptr) return;
  for (std::int32_t i = 0; i < handle->count; ++i) system::Release(handle->images[i]);
  system::Release(handle->images);
  if (ArtworkDescriptor(*handle) >= 0) close(ArtworkDescriptor(*handle));
  system::Release(handle);
}

// What the read delivers is not looked at: a file that has become shorter leaves the rest of the
// buffer as it was. Kept.
std::int32_t ReadArtworkInfo(const ArtworkHandle* handle, std::int32_t index,
                             ArtworkInfo* info) noexcept {
  if (handle == nullptr || info == nullptr || index < 0 || index >= handle->count) return 0;
  const ArtworkImage& image = *handle->images[index];
  const std::int32_t size = image.dataSize;
  if (size <= info->dataSize) {
    info->format = image.format;
    info->width = image.width;
    info->height = image.height;
    if (size > 0 && info->data != nullptr) {
      (void)system::ReadAt(ArtworkDescriptor(*handle), image.fileOffset, info->data,
                           static_cast<std::size_t>(size));
    }
  }
  info->dataSize = size;
  // Without a sign, the sum may leave 32 bits.
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(size) + sizeof(ArtworkInfo));
}

}  // namespace tavrel
