#include "host/artwork/Albums.h"

#include <initializer_list>
#include <numeric>
#include <optional>
#include <unordered_map>

#include "host/artwork/FileNames.h"

namespace tavrel::host {
namespace {

// Sets of songs that are merged step by step; each is named by one of its songs.
class SongSets {
 public:
  explicit SongSets(std::size_t count) : above_(count) {
    std::iota(above_.begin(), above_.end(), std::size_t{0});
  }
  std::size_t SetOf(std::size_t song) {
    while (above_[song] != song) song = above_[song] = above_[above_[song]];
    return song;
  }
  // The set keeps the name of the earlier song.
  void Merge(std::size_t a, std::size_t b) {
    const std::size_t first = std::min(SetOf(a), SetOf(b));
    above_[SetOf(a)] = above_[SetOf(b)] = first;
  }

 private:
  std::vector<std::size_t> above_;
};

std::string JoinNames(std::initializer_list<std::optional<std::string_view>> parts) {
  std::string joined;
  for (const auto& part : parts) {
    const std::string name = SafeName(part.value_or(""));
    if (name.empty()) continue;
    if (!joined.empty()) joined += " - ";
    joined += name;
  }
  return joined.empty() ? "Untitled" : joined;
}

std::string Key(std::string_view kind, std::string_view album, std::string_view with) {
  return std::string(kind).append(album).append(1, '\0').append(with);
}

std::string_view FolderOf(std::string_view path) {
  return path.substr(0, path.rfind('/') + 1);
}

// The artist that two songs of one album have in common.
void Share(std::optional<std::string>& artist, std::optional<std::string_view> other) {
  if (artist != other.value_or("")) artist = "Various Artists";
}

struct Facts {
  std::string artist;
  std::string album;
  std::string name;  // of a song that stands alone
};

}  // namespace

std::string SongFileName(const Song& song) {
  return JoinNames({song.artist, song.album, song.name});
}

std::vector<Album> ReadAlbums(const Library& library) {
  PlaylistRecord* songs = library.openAllSongs();
  const auto count = static_cast<std::size_t>(library.getSongCount(songs));
  SongReader reader(library);
  SongSets sets(count);
  std::vector<Facts> facts(count);
  std::unordered_map<std::string, std::size_t> firstOf;
  for (std::size_t i = 0; i < count; ++i) {
    const Song& song = reader.Read(songs, static_cast<std::int32_t>(i));
    const std::string_view album = song.album.value_or("");
    facts[i] = {std::string(song.artist.value_or("")), std::string(album), {}};
    if (album.empty()) {
      facts[i].name = SongFileName(song);
      continue;
    }
    const std::string_view folder = FolderOf(song.location.value_or(""));
    sets.Merge(i, firstOf.try_emplace(Key("artist ", album, facts[i].artist), i).first->second);
    if (!folder.empty()) {
      sets.Merge(i, firstOf.try_emplace(Key("folder ", album, folder), i).first->second);
    }
  }

  std::vector<Album> albums;
  std::vector<std::optional<std::string>> artists;
  std::vector<std::size_t> albumOf(count);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t set = sets.SetOf(i);
    if (set == i) {
      albumOf[i] = albums.size();
      albums.emplace_back();
      artists.emplace_back(facts[i].artist);
    }
    const std::size_t album = albumOf[set];
    albums[album].songs.push_back(static_cast<std::int32_t>(i));
    Share(artists[album], facts[i].artist);
  }
  for (std::size_t album = 0; album < albums.size(); ++album) {
    const Facts& first = facts[static_cast<std::size_t>(albums[album].songs.front())];
    albums[album].name =
        first.name.empty() ? JoinNames({*artists[album], first.album}) : first.name;
  }
  return albums;
}

}  // namespace tavrel::host
