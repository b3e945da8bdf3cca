#include "host/library/SongPlaces.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

namespace tavrel::host {
namespace {

std::optional<std::int64_t> TrackId(const LibraryFunctions& library, const PlaylistRecord* playlist,
                                    std::int32_t position) {
  std::array<char, 32> text{};
  const std::int32_t size = library.getSongProperty(playlist, position, "Track ID", text.data(),
                                                    static_cast<std::int32_t>(text.size()));
  if (size <= 0 || size > static_cast<std::int32_t>(text.size())) return std::nullopt;
  std::int64_t id = 0;
  const char* end = text.data() + size - 1;
  const auto [stop, error] = std::from_chars(text.data(), end, id);
  return error == std::errc() && stop == end ? std::optional(id) : std::nullopt;
}

}  // namespace

SongNumbers::SongNumbers(const LibraryFunctions& library) : library_(library) {
  const PlaylistRecord* all = library.openAllSongs();
  const std::int32_t count = library.getSongCount(all);
  for (std::int32_t i = 0; i < count; ++i) {
    if (const auto id = TrackId(library, all, i)) byId_.emplace_back(*id, i);
  }
  std::sort(byId_.begin(), byId_.end());
}

std::int32_t SongNumbers::Of(const PlaylistRecord* playlist, std::int32_t position) const {
  const auto id = TrackId(library_, playlist, position);
  if (!id) return -1;
  const auto place = std::lower_bound(byId_.begin(), byId_.end(), std::pair(*id, std::int32_t{0}));
  return place != byId_.end() && place->first == *id ? place->second : -1;
}

SongPlaces::SongPlaces(const LibraryFunctions& library, const std::vector<Playlist>& playlists)
    : playlists_(playlists) {
  const SongNumbers numbers(library);
  for (std::size_t list = 0; list < playlists.size(); ++list) {
    for (std::int32_t i = 0; i < playlists[list].songCount; ++i) {
      const std::int32_t song = numbers.Of(playlists[list].handle, i);
      if (song >= 0) held_.emplace_back(song, list);
    }
  }
  std::sort(held_.begin(), held_.end());
  held_.erase(std::unique(held_.begin(), held_.end()), held_.end());
}

std::vector<const Playlist*> SongPlaces::Of(std::int32_t song) const {
  std::vector<const Playlist*> lists;
  auto place = std::lower_bound(held_.begin(), held_.end(), Held(song, 0));
  for (; place != held_.end() && place->first == song; ++place) {
    lists.push_back(&playlists_[place->second]);
  }
  return lists;
}

}  // namespace tavrel::host
