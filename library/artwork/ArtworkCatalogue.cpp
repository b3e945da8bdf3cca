#include "library/artwork/ArtworkCatalogue.h"

#include <cstring>
#include <string>
#include <string_view>

#include "library/TableAppender.h"
#include "library/artwork/ArtworkIndex.h"
#include "system/FolderListing.h"
#include "system/FolderWalk.h"
#include "system/Guard.h"
#include "system/Memory.h"
#include "text/PathNames.h"

namespace tavrel {
namespace {

constexpr std::string_view kArtworkFolder = "Music/iTunes/Album Artwork";

// Only the extension counts, and exactly so: a folder of that name is listed, "ITC2" is not.
bool IsCacheFile(std::string_view path) noexcept {
  const std::string_view extension = text::SplitExtension(path).extension;
  return extension == "itc" || extension == "itc2";
}

void ReleaseEntry(ArtworkFileEntry* entry) noexcept {
  if (entry == nullptr) return;
  system::Release(entry->path);
  system::Release(entry);
}

// "FOLDER/NAME"; none when memory is exhausted.
ArtworkFileEntry* NewEntry(std::string_view folder, std::string_view name) noexcept {
  auto* entry = static_cast<ArtworkFileEntry*>(system::AllocateZeroed(sizeof(ArtworkFileEntry)));
  if (entry == nullptr) return nullptr;
  const std::size_t size = folder.size() + name.size() + 2;
  entry->path = static_cast<char*>(system::AllocateZeroed(size));
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
  TableAppender<ArtworkFileEntry> table(state.artworkFiles, state.artworkFileCapacity,
                                        state.artworkFileCount);
  system::FolderWalk walk(folder);
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

void CreateArtworkCatalogue(LibraryState& state) noexcept {
  if (state.home == nullptr) return;
  if (state.artworkDestroyed) {
    // Nothing is left behind the fields, which still tell of the former catalogue.
    state.artworkFiles = nullptr;
    state.artworkFileCapacity = 0;
    state.artworkFileCount = 0;
    state.artworkDestroyed = false;
  }
  (void)system::Guarded(
      false, [&] { return ListCacheFiles(system::PathIn(state.home, kArtworkFolder), state); });
}

// The catalogue's fields are not reset: the global record is freed right after.
void DestroyArtworkCatalogue(LibraryState& state) noexcept {
  if (state.artworkDestroyed) return;
  state.artworkDestroyed = true;
  ReleaseArtworkIndex(state);
  for (std::int32_t i = 0; i < state.artworkFileCount; ++i) ReleaseEntry(state.artworkFiles[i]);
  system::Release(state.artworkFiles);
}

}  // namespace tavrel
