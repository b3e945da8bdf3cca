#include "host/artwork/Albums.h"

#include <initializer_list>
#include <optional>
#include <string_view>

#include "host/library/AlbumGrouping.h"
#include "host/library/SongRecord.h"
#include "host/naming/FileNames.h"

namespace tavrel::host {
namespace {

using Part = std::optional<std::size_t>;  // of an album; none for a song without one

std::string JoinNames(std::initializer_list<std::optional<std::string_view>> parts) {
  std::string joined;
  for (const auto& part : parts) {
    const std::string name = SafeName(part.value_or(""));
    if (name.empty()) continue;
    if (!joined.empty()) joined += " - ";
    joined += name;
  }
  return joined.empty() ? kUntitled : joined;
}

// The part of each song.
std::vector<Part> GroupSongs(const LibraryFunctions& library, AlbumGrouping& grouping) {
  std::vector<Part> parts;
  ForEachRecord(
      library, library.openAllSongs(), FieldsOfSong(),
      [&](std::int32_t, const SongRecord& song) { parts.push_back(grouping.Add(AsSong(song))); });
  return parts;
}

// For each part that stands for an album, whether all parts of it have one artist.
std::vector<bool> HaveOneArtist(const AlbumGrouping& grouping,
                                const std::vector<std::size_t>& albums) {
  std::vector<bool> haveOne(albums.size(), true);
  for (std::size_t part = 0; part < albums.size(); ++part) {
    if (grouping.ArtistOf(part) != grouping.ArtistOf(albums[part])) haveOne[albums[part]] = false;
  }
  return haveOne;
}

}  // namespace

std::string SongFileName(const Song& song) {
  return JoinNames({song.artist, song.album, song.name});
}

std::vector<Album> ReadAlbums(const LibraryFunctions& library) {
  AlbumGrouping grouping;
  const std::vector<Part> parts = GroupSongs(library, grouping);
  const std::vector<std::size_t> albumOf = grouping.Albums();
  const std::vector<bool> haveOneArtist = HaveOneArtist(grouping, albumOf);

  PlaylistRecord* songs = library.openAllSongs();
  SongReader reader(library);
  std::vector<Album> albums;
  std::vector<std::optional<std::size_t>> places(albumOf.size());  // in `albums`
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const auto position = static_cast<std::int32_t>(i);
    if (!parts[i]) {
      albums.push_back({SongFileName(reader.Read(songs, position)), {position}});
      continue;
    }
    const std::size_t album = albumOf[*parts[i]];
    if (!places[album]) {
      const Song& first = reader.Read(songs, position);
      const std::string_view artist =
          haveOneArtist[album] ? grouping.ArtistOf(album) : kVariousArtists;
      places[album] = albums.size();
      albums.push_back({JoinNames({artist, first.album}), {}});
    }
    albums[*places[album]].songs.push_back(position);
  }
  return albums;
}

std::vector<std::int32_t> SongsOnAlbumOf(const Song& song, const LibraryFunctions& library) {
  AlbumGrouping grouping;
  const std::vector<Part> parts = GroupSongs(library, grouping);
  const Part wanted = grouping.Find(song);
  if (!wanted) return {};
  const std::vector<std::size_t> albumOf = grouping.Albums();
  std::vector<std::int32_t> songs;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const bool isOnIt = parts[i] && albumOf[*parts[i]] == albumOf[*wanted];
    if (isOnIt) songs.push_back(static_cast<std::int32_t>(i));
  }
  return songs;
}

}  // namespace tavrel::host
