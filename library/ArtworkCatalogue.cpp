#include "library/ArtworkCatalogue.h"

#include <cstring>
#include <string>
#include <string_view>

#include "agent/Implementations.h"
#include "library/ArtworkIndex.h"
#include "library/GrowingTable.h"
#include "platform/FolderListing.h"
#include "platform/FolderWalk.h"
#include "platform/Guard.h"
#include "platform/Memory.h"
#include "platform/PathNames.h"

namespace platform = tavrel::platform;
using tavrel::Private;

namespace {

constexpr std::string_view kArtworkFolder = "Music/iTunes/Album Artwork";

// Only the extension counts, and exactly so: a folder of that name is listed, "ITC2" is not.
bool IsCacheFile(std::string_view path) noexcept {
  const std::string_view extension = platform::SplitExtension(path).extension;
  return extension == "itc" || extension == "itc2";
}

void ReleaseEntry(ArtworkFileEntry* entry) noexcept {
  if (entry == nullptr) return;
  platform::Release(entry->path);
  platform::Release(entry);
}

// "FOLDER/NAME"; none when memory is exhausted.
ArtworkFileEntry* NewEntry(std::string_view folder, std::string_view name) noexcept {
  auto* entry = static_cast<ArtworkFileEntry*>(platform::AllocateZeroed(sizeof(ArtworkFileEntry)));
  if (entry == nullptr) return nullptr;
  const std::size_t size = folder.size() + name.size() + 2;
  entry->path = static_cast<char*>(platform::AllocateZeroed(size));
  if (entry->path == nullptr) {
    ReleaseEntry(entry);
    return nullptr;
  }
  entry->pathSize = static_cast<std::int32_t>(size);
  std::memcpy(entry->path, folder.data(), folder.size());
  entry->path[folder.size()] = '/';
  std::memcpy(entry->path + folder.size() + 1, name.data(), name.size());
  return entry;
}

// False when memory was exhausted: what was listed so far stays.
bool ListCacheFiles(const std::string& folder, GlobalState& state) {
  tavrel::TableAppender<ArtworkFileEntry> table(state.artworkFiles, state.artworkFileCapacity,
                                                state.artworkFileCount);
  platform::FolderWalk walk(folder);
  while (const auto name = walk.Next()) {
    if (!IsCacheFile(*name)) continue;
    ArtworkFileEntry* entry = NewEntry(folder, *name);
    if (entry == nullptr || !table.Reserve()) {
      ReleaseEntry(entry);
      return false;
    }
    table.Append(entry);
  }
  return true;
}

}  // namespace

std::int32_t CreateArtworkArray() noexcept {
  if (g_pGlobal == nullptr || Private().home == nullptr) return 0;
  if (Private().artworkDestroyed) {
    // Nothing is left behind the fields, which still tell of the former catalogue.
    g_pGlobal->artworkFiles = nullptr;
    g_pGlobal->artworkFileCapacity = 0;
    g_pGlobal->artworkFileCount = 0;
    Private().artworkDestroyed = false;
  }
  (void)platform::Guarded(false, [] {
    return ListCacheFiles(platform::PathIn(Private().home, kArtworkFolder), *g_pGlobal);
  });
  return 0;
}

// The catalogue's fields are not reset: the global record is freed right after.
std::int32_t DestroyArtworkArray() noexcept {
  if (g_pGlobal == nullptr || Private().artworkDestroyed) return 0;
  Private().artworkDestroyed = true;
  tavrel::ReleaseArtworkIndex();
  for (std::int32_t i = 0; i < g_pGlobal->artworkFileCount; ++i) {
    ReleaseEntry(g_pGlobal->artworkFiles[i]);
  }
  platform::Release(g_pGlobal->artworkFiles);
  return 0;
}
