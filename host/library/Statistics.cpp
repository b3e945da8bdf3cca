#include "host/library/Statistics.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "host/library/AlbumGrouping.h"
#include "host/library/SongRecord.h"
#include "host/library/TextHash.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

void Count(Tally& tally, std::int64_t time) {
  ++tally.songs;
  tally.time += time;
}

std::vector<Tally> Top(std::vector<Tally> tallies) {
  const auto isBefore = [](const Tally& left, const Tally& right) {
    return std::tie(right.songs, right.time, left.name, left.artist) <
           std::tie(left.songs, left.time, right.name, right.artist);
  };
  const auto count = std::min(tallies.size(), kTopCount);
  std::partial_sort(tallies.begin(), tallies.begin() + static_cast<std::ptrdiff_t>(count),
                    tallies.end(), isBefore);
  tallies.resize(count);
  return tallies;
}

// Artists or genres.
class Names {
 public:
  void Add(std::optional<std::string_view> name, std::int64_t time) {
    if (!name || name->empty()) return;
    if (*name != lastName_) {
      lastNumber_ = NumberOf(*name);
      lastName_ = *name;
    }
    Count(tallies_[lastNumber_], time);
  }

  [[nodiscard]] const std::vector<Tally>& All() const { return tallies_; }

 private:
  std::size_t NumberOf(std::string_view name) {
    auto known = numbers_.find(name);
    if (known == numbers_.end()) {
      const std::string composed = Compose(name);
      const auto [entry, isNew] = numbers_.try_emplace(composed, tallies_.size());
      if (isNew) tallies_.push_back({composed, {}});
      known = numbers_.try_emplace(std::string(name), entry->second).first;
    }
    return known->second;
  }

  // As the file writes them and composed.
  TextMap<std::size_t> numbers_;
  std::vector<Tally> tallies_;
  std::string lastName_;  // the songs of an album stand together in the file: most need no look-up
  std::size_t lastNumber_ = 0;
};

class Albums {
 public:
  void Add(const Song& song, std::int64_t time) {
    const std::optional<std::size_t> part = grouping_.Add(song);
    if (!part) return;
    if (*part == parts_.size()) {
      parts_.push_back({grouping_.TitleOf(*part), grouping_.ArtistOf(*part)});
    }
    Count(parts_[*part], time);
  }

  [[nodiscard]] std::vector<Tally> All() const {
    std::vector<Tally> sums = parts_;
    std::vector<Tally> all;
    const std::vector<std::size_t> albums = grouping_.Albums();
    for (std::size_t part = 0; part < sums.size(); ++part) {
      if (albums[part] == part) continue;
      Tally& album = sums[albums[part]];
      album.songs += sums[part].songs;
      album.time += sums[part].time;
      if (parts_[part].artist != parts_[albums[part]].artist) album.artist = kVariousArtists;
    }
    for (std::size_t part = 0; part < sums.size(); ++part) {
      if (albums[part] == part) all.push_back(std::move(sums[part]));
    }
    return all;
  }

 private:
  AlbumGrouping grouping_;
  std::vector<Tally> parts_;
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

Statistics CollectStatistics(const LibraryFunctions& library) {
  Statistics statistics;
  Names artists;
  Albums albums;
  Names genres;
  MostPlayed mostPlayed;
  ForEachRecord(library, library.openAllSongs(), FieldsOfSong(),
                [&](std::int32_t, const SongRecord& record) {
                  const Song song = AsSong(record);
                  const std::int64_t time = std::max(song.totalTime, 0);
                  ++statistics.songs;
                  if (song.isPodcast) {
                    ++statistics.podcasts;
                  } else if (song.isMovie) {
                    ++statistics.movies;
                  }
                  statistics.time += time;
                  artists.Add(song.artist, time);
                  albums.Add(song, time);
                  genres.Add(song.genre, time);
                  mostPlayed.Count(song);
                });
  statistics.artists = Top(artists.All());
  statistics.albums = Top(albums.All());
  statistics.genres = Top(genres.All());
  statistics.mostPlayed = mostPlayed.Top();
  return statistics;
}

}  // namespace tavrel::host
