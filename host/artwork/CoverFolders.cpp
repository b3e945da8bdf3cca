#include "host/artwork/CoverFolders.h"

#include "host/library/SongRecord.h"
#include "host/library/TextHash.h"

namespace tavrel::host {
namespace {

// The album of each song.
std::vector<std::size_t> AlbumOfSongs(const std::vector<Album>& albums) {
  std::vector<std::size_t> albumOf;
  for (std::size_t album = 0; album < albums.size(); ++album) {
    for (const std::int32_t song : albums[album].songs) {
      const auto position = static_cast<std::size_t>(song);
      if (position >= albumOf.size()) albumOf.resize(position + 1);
      albumOf[position] = album;
    }
  }
  return albumOf;
}

struct Folder {
  std::size_t album;  // the first one that it holds a song of
  bool hasOthers = false;
};

}  // namespace

CoverFolders FindCoverFolders(const LibraryFunctions& library, const std::vector<Album>& albums) {
  const std::vector<std::size_t> albumOf = AlbumOfSongs(albums);
  TextMap<Folder> folders;
  std::vector<std::string> order;
  CoverFolders found;
  ForEachRecord(library, library.openAllSongs(), SetOf({Field::Path, Field::Status}),
                [&](std::int32_t position, const SongRecord& song) {
                  found.tally.Add(song);
                  const auto path = song.Text(Field::Path);
                  if (!path) return;
                  const std::size_t album = albumOf[static_cast<std::size_t>(position)];
                  std::string folder(path->substr(0, path->rfind('/')));
                  const auto [known, isNew] = folders.try_emplace(folder, Folder{album});
                  if (isNew) order.push_back(std::move(folder));
                  if (known->second.album != album) known->second.hasOthers = true;
                });
  found.ofAlbum.resize(albums.size());
  for (std::string& path : order) {
    const Folder& folder = folders.find(path)->second;
    if (folder.hasOthers) ++found.ofSeveral;
    if (!folder.hasOthers) found.ofAlbum[folder.album].push_back(std::move(path));
  }
  return found;
}

}  // namespace tavrel::host
