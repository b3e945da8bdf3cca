#include "host/library/SongPlaces.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tavrel::host {
namespace {

constexpr std::size_t kLongestId = 31;  // in bytes

std::optional<std::int64_t> TrackId(const LibraryFunctions& library, const PlaylistRecord* playlist,
                                    std::int32_t position) {
  std::array<char, kLongestId + 1> text{};
  const std::int32_t size = library.getSongProperty(playlist, position, kTrackIdKey, text.data(),
                                                    static_cast<std::int32_t>(text.size()));
  if (size <= 0 || size > static_cast<std::int32_t>(text.size())) return std::nullopt;
  return TrackIdOf({text.data(), static_cast<std::size_t>(size - 1)});
}

std::vector<NumberedId> IdsOfAllSongs(const LibraryFunctions& library) {
  std::vector<NumberedId> ids;
  const PlaylistRecord* all = library.openAllSongs();
  const std::int32_t count = library.getSongCount(all);
  for (std::int32_t i = 0; i < count; ++i) {
    if (const auto id = TrackId(library, all, i)) ids.emplace_back(*id, i);
  }
  return ids;
}

}  // namespace

std::optional<std::int64_t> TrackIdOf(std::string_view text) noexcept {
  if (text.size() > kLongestId) return std::nullopt;
  std::int64_t id = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, id);
  return error == std::errc() && stop == end ? std::optional(id) : std::nullopt;
}

SongNumbers::SongNumbers(const LibraryFunctions& library)
    : SongNumbers(library, IdsOfAllSongs(library)) {}

SongNumbers::SongNumbers(const LibraryFunctions& library, std::vector<NumberedId> ids)
    : library_(library), byId_(std::move(ids)) {
  // As they nearly always stand.
  if (!std::is_sorted(byId_.begin(), byId_.end())) std::sort(byId_.begin(), byId_.end());
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
