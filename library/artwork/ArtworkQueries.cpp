// The questions that a host asks about artwork.
#include <unistd.h>

#include <algorithm>

#include "agent/Implementations.h"
#include "library/artwork/ArtworkFile.h"
#include "library/artwork/ArtworkIndex.h"
#include "library/playlists/PlaylistTable.h"
#include "library/tracks/TrackTable.h"
#include "system/Files.h"
#include "system/Memory.h"

using namespace tavrel;

namespace {

tavrel::ArtworkIds IdsOf(const TrackRecord& track) noexcept {
  tavrel::ArtworkIds ids;
  const std::uint8_t* libraryId = g_pGlobal->libraryPersistentId;
  std::copy_n(track.persistentId, 8, std::copy_n(libraryId, 8, ids.begin()));
  return ids;
}

ArtworkHandle* OpenSongArtwork(PlaylistRecord* playlist, std::int32_t index,
                               tavrel::ArtworkLayouts layouts) noexcept {
  if (g_pGlobal == nullptr) return nullptr;
  // Before any argument is looked at, and again for as long as nothing is found. Kept.
  if (g_pGlobal->artworkFileCount == 0) CreateArtworkArray();
  if (playlist == nullptr || index < 0 || index >= playlist->count) return nullptr;
  const TrackRecord& track = *playlist->tracks[index];
  if (track.pendingDict != nullptr) {
    SongInfo discarded{};
    GetSongInfoImp(playlist, index, &discarded);  // the track has its ID from here on
  }
  const char* path = tavrel::FindArtworkFile(IdsOf(track));
  return path == nullptr ? nullptr : tavrel::OpenArtworkHandle(path, layouts);
}

}  // namespace

ArtworkHandle* OpenArtworkImp(PlaylistRecord* playlist, std::int32_t index) noexcept {
  return OpenSongArtwork(playlist, index, tavrel::ArtworkLayouts::Usual);
}

ArtworkHandle* OpenArtworkAny(PlaylistRecord* playlist, std::int32_t index) noexcept {
  return OpenSongArtwork(playlist, index, tavrel::ArtworkLayouts::Every);
}

ArtworkHandle* OpenArtworkFile(const char* path) noexcept {
  if (path == nullptr) return nullptr;
  return tavrel::OpenArtworkHandle(path, tavrel::ArtworkLayouts::Every);
}

std::int32_t GetArtworkCountImp(const ArtworkHandle* handle) noexcept {
  return handle == nullptr ? 0 : handle->count;
}

// What the read delivers is not looked at: a file that has become shorter leaves the rest of the
// buffer as it was. Kept.
std::int32_t GetArtworkInfoImp(ArtworkHandle* handle, std::int32_t index,
                               ArtworkInfo* info) noexcept {
  if (handle == nullptr || info == nullptr || index < 0 || index >= handle->count) return 0;
  const ArtworkImage& image = *handle->images[index];
  const std::int32_t size = image.info.dataSize;
  if (size <= info->dataSize) {
    info->format = image.info.format;
    info->width = image.info.width;
    info->height = image.info.height;
    if (size > 0 && info->data != nullptr) {
      (void)system::ReadAt(tavrel::ArtworkDescriptor(*handle), image.fileOffset, info->data,
                           static_cast<std::size_t>(size));
    }
  }
  info->dataSize = size;
  // Without a sign, the sum may leave 32 bits.
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(size) + sizeof(ArtworkInfo));
}

void CloseArtworkImp(ArtworkHandle* handle) noexcept {
  if (handle == nullptr) return;
  for (std::int32_t i = 0; i < handle->count; ++i) system::Release(handle->images[i]);
  system::Release(handle->images);
  if (tavrel::ArtworkDescriptor(*handle) >= 0) close(tavrel::ArtworkDescriptor(*handle));
  system::Release(handle);
}
