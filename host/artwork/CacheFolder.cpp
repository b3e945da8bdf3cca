#include "host/artwork/CacheFolder.h"

#include <algorithm>
#include <optional>
#include <unordered_set>

#include "system/Files.h"
#include "system/FolderListing.h"
#include "system/FolderWalk.h"
#include "text/PathNames.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kIdLength = 16;

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  for (char& letter : upper) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
  }
  return upper;
}

// The text of the element behind a key that ends at `at`: 16 digits.
std::string IdBehind(std::string_view text, std::size_t at) {
  constexpr std::string_view kString = "<string>";
  const std::size_t start = text.find('<', at);
  if (start == std::string_view::npos || !text.substr(start).starts_with(kString)) {
    return std::string(kNoId);
  }
  return UpperCase(text.substr(start + kString.size(), kIdLength));
}

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
  const bool fits = name.size() == 2 * kIdLength + 1 && name.starts_with(library + "-");
  return fits ? name.substr(kIdLength + 1) : std::string();
}

}  // namespace

// Each track begins with its Track ID; behind the tracks, the same key stands in playlists.
PersistentIds FindPersistentIds(std::string_view libraryText) {
  constexpr std::string_view kKey = "<key>";
  PersistentIds ids;
  for (std::size_t at = libraryText.find(kKey); at != std::string_view::npos;
       at = libraryText.find(kKey, at)) {
    at += kKey.size();
    const std::string_view rest = libraryText.substr(at, 32);
    if (rest.starts_with("Playlists<")) break;
    if (rest.starts_with("Track ID<")) ids.tracks.emplace_back(kNoId);
    const std::size_t end = at + std::min(rest.find('<') + 1, rest.size());
    if (rest.starts_with("Library Persistent ID<")) ids.library = IdBehind(libraryText, end);
    if (rest.starts_with("Persistent ID<") && !ids.tracks.empty()) {
      ids.tracks.back() = IdBehind(libraryText, end);
    }
  }
  return ids;
}

CacheFolder::CacheFolder(const std::string& libraryFile) {
  const system::ByteBuffer text = system::ReadFileBytes(libraryFile.c_str());
  if (text) ids_ = FindPersistentIds(text.view());
  const std::unordered_set<std::string> known(ids_.tracks.begin(), ids_.tracks.end());
  const std::string folder = libraryFile.substr(0, libraryFile.rfind('/') + 1) + "Album Artwork";
  system::FolderWalk walk(folder);
  while (const auto name = walk.Next()) {
    const std::string path = system::PathIn(folder, *name);
    if (!IsCacheFile(path)) continue;
    const std::string track = TrackIdIn(path, ids_.library);
    if (track.empty() || !known.contains(track)) {
      unclaimed_.push_back(path);
    } else {
      files_.try_emplace(track, path);
    }
  }
}

std::string CacheFolder::FileOf(std::size_t song) const {
  if (song >= ids_.tracks.size()) return {};
  const auto file = files_.find(ids_.tracks[song]);
  return file == files_.end() ? std::string() : file->second;
}

}  // namespace tavrel::host
