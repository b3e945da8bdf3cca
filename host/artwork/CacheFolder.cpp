#include "host/artwork/CacheFolder.h"

#include <utility>

#include "system/FolderListing.h"
#include "system/FolderWalk.h"
#include "text/PathNames.h"

namespace tavrel::host {
namespace {

bool IsCacheFile(const std::string& path) {
  const std::string_view extension = text::SplitExtension(path).extension;
  return (extension == "itc" || extension == "itc2") &&
         system::KindOfEntry(path) != system::EntryKind::Folder;
}

std::string_view BaseName(std::string_view path) {
  const std::string_view name = text::SplitExtension(path).base;
  return name.substr(name.rfind('/') + 1);
}

// The track ID in a file's name, if the library's ID stands before it.
std::string TrackIdIn(std::string_view path, const std::string& library) {
  const std::string name = UpperCase(BaseName(path));
  const bool fits = name.size() == 2 * kNoId.size() + 1 && name.starts_with(library + "-");
  return fits ? name.substr(kNoId.size() + 1) : std::string();
}

}  // namespace

// A folder without such files is no reason to read every song's ID.
CacheFolder::CacheFolder(const LibraryFunctions& library, const std::string& libraryFile) {
  const std::string folder = libraryFile.substr(0, libraryFile.rfind('/') + 1) + "Album Artwork";
  std::vector<std::string> paths;
  system::FolderWalk walk(folder);
  while (const auto name = walk.Next()) {
    std::string path = system::PathIn(folder, *name);
    if (IsCacheFile(path)) paths.push_back(std::move(path));
  }
  if (paths.empty()) return;
  ids_ = ReadPersistentIds(library);
  const TextSet known(ids_.tracks.begin(), ids_.tracks.end());
  for (std::string& path : paths) {
    const std::string track = TrackIdIn(path, ids_.library);
    if (track.empty() || !known.contains(track)) {
      unclaimed_.push_back(std::move(path));
    } else {
      files_.try_emplace(track, std::move(path));
    }
  }
}

std::string CacheFolder::FileOf(std::size_t song) const {
  if (song >= ids_.tracks.size()) return {};
  const auto file = files_.find(ids_.tracks[song]);
  return file == files_.end() ? std::string() : file->second;
}

}  // namespace tavrel::host
