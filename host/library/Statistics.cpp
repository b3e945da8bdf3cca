#include "host/library/Statistics.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <tuple>
#include <unordered_map>

#include "host/library/SongReader.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

// Hashes a text of any type, so that a look-up copies nothing.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const noexcept {
    return std::hash<std::string_view>()(text);
  }
};

class Tallies {
 public:
  void Count(std::optional<std::string_view> name, std::string_view artist, std::int64_t time) {
    if (!name || name->empty()) return;
    key_ = *name;
    key_ += '\0';
    key_ += artist;
    auto entry = tallies_.find(std::string_view(key_));
    if (entry == tallies_.end()) {
      entry = tallies_.emplace(key_, Tally{Compose(*name), Compose(artist)}).first;
    }
    ++entry->second.songs;
    entry->second.time += time;
  }

  [[nodiscard]] std::vector<Tally> Top() const {
    std::vector<Tally> top;
    for (const auto& [key, tally] : Merged()) top.push_back(tally);
    const auto isBefore = [](const Tally& left, const Tally& right) {
      return std::tie(right.songs, right.time, left.name, left.artist) <
             std::tie(left.songs, left.time, right.name, right.artist);
    };
    std::sort(top.begin(), top.end(), isBefore);
    if (top.size() > kTopCount) top.resize(kTopCount);
    return top;
  }

 private:
  using Map = std::unordered_map<std::string, Tally, TextHash, std::equal_to<>>;

  // The same name may have been counted under several spellings.
  [[nodiscard]] Map Merged() const {
    Map merged;
    for (const auto& [key, tally] : tallies_) {
      Tally& sum = merged[tally.name + '\0' + tally.artist];
      sum.name = tally.name;
      sum.artist = tally.artist;
      sum.songs += tally.songs;
      sum.time += tally.time;
    }
    return merged;
  }

  Map tallies_;
  std::string key_;
};

// Keeps the songs with the most plays; of equal ones those that come first.
class MostPlayed {
 public:
  void Count(const Song& song) {
    if (song.playCount <= 0) return;
    if (songs_.size() == kTopCount && song.playCount <= songs_.back().plays) return;
    if (songs_.size() == kTopCount) songs_.pop_back();
    const auto place = std::find_if(songs_.begin(), songs_.end(), [&](const PlayedSong& other) {
      return other.plays < song.playCount;
    });
    songs_.insert(place, {std::optional<std::string>(song.name),
                          std::optional<std::string>(song.artist), song.playCount});
  }

  [[nodiscard]] const std::vector<PlayedSong>& Top() const { return songs_; }

 private:
  std::vector<PlayedSong> songs_;
};

}  // namespace

Statistics CollectStatistics(const Library& library) {
  Statistics statistics;
  Tallies artists;
  Tallies albums;
  Tallies genres;
  MostPlayed mostPlayed;
  SongReader reader(library);
  PlaylistRecord* all = library.openAllSongs();
  const std::int32_t count = library.getSongCount(all);
  for (std::int32_t position = 0; position < count; ++position) {
    const Song& song = reader.Read(all, position);
    const std::int64_t time = std::max(song.totalTime, 0);
    ++statistics.songs;
    if (song.isMovie) ++statistics.movies;
    statistics.time += time;
    artists.Count(song.artist, "", time);
    albums.Count(song.album, song.artist.value_or(""), time);
    genres.Count(song.genre, "", time);
    mostPlayed.Count(song);
  }
  statistics.artists = artists.Top();
  statistics.albums = albums.Top();
  statistics.genres = genres.Top();
  statistics.mostPlayed = mostPlayed.Top();
  return statistics;
}

}  // namespace tavrel::host
