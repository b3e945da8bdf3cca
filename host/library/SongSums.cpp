#include "host/library/SongSums.h"

#include <algorithm>
#include <optional>

#include "host/library/AlbumGrouping.h"
#include "host/library/SongRecord.h"
#include "host/library/TextHash.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

// The value that a song is counted under; empty when it has none.
std::string ValueOf(const SongRecord& song, const Grouping& grouping) {
  constexpr std::size_t kYear = 4;
  const std::string text(song.Text(grouping.field).value_or(""));
  if (grouping.name == "added") return text.substr(0, kYear);
  if (grouping.name != "decade") return text;
  const auto year = song.Number(Field::Year);
  return year ? std::to_string(*year / 10 * 10) : "";
}

void Count(Sum& sum, const Song& song) {
  ++sum.songs;
  sum.time += std::max(song.totalTime, 0);
  sum.plays += std::max(song.playCount, 0);
}

std::vector<Sum> SumUpValues(const Grouping& grouping, const LibraryFunctions& library) {
  std::vector<Sum> sums;
  TextMap<std::size_t> numbers;
  ForEachRecord(library, library.openAllSongs(),
                SetOf({grouping.field, Field::Seconds, Field::Plays}),
                [&](std::int32_t, const SongRecord& record) {
                  const std::string value = ValueOf(record, grouping);
                  auto known = numbers.find(value);
                  if (known == numbers.end()) {
                    const std::string composed = Compose(value);
                    const auto [entry, isNew] = numbers.try_emplace(composed, sums.size());
                    if (isNew)
                      sums.push_back({.value = composed, .isNone = value.empty(), .artist = {}});
                    known = numbers.try_emplace(value, entry->second).first;
                  }
                  Count(sums[known->second], AsSong(record));
                });
  return sums;
}

std::vector<Sum> SumUpAlbums(const LibraryFunctions& library) {
  AlbumGrouping albums;
  std::vector<Sum> parts;
  Sum none{.value = {}, .isNone = true, .artist = {}};
  ForEachRecord(
      library, library.openAllSongs(), FieldsOfSong(), [&](std::int32_t, const SongRecord& record) {
        const Song song = AsSong(record);
        const auto part = albums.Add(song);
        if (part && *part == parts.size()) {
          parts.push_back({.value = albums.TitleOf(*part), .artist = albums.ArtistOf(*part)});
        }
        Count(part ? parts[*part] : none, song);
      });
  const std::vector<std::size_t> albumOf = albums.Albums();
  std::vector<Sum> sums;
  for (std::size_t part = 0; part < parts.size(); ++part) {
    Sum& album = parts[albumOf[part]];
    if (albumOf[part] == part) continue;
    album.songs += parts[part].songs;
    album.time += parts[part].time;
    album.plays += parts[part].plays;
    if (albums.ArtistOf(part) != albums.ArtistOf(albumOf[part])) album.artist = kVariousArtists;
  }
  for (std::size_t part = 0; part < parts.size(); ++part) {
    if (albumOf[part] == part) sums.push_back(parts[part]);
  }
  if (none.songs > 0) sums.push_back(none);
  return sums;
}

}  // namespace

std::vector<Sum> SumUp(const Grouping& grouping, const LibraryFunctions& library) {
  return grouping.field == Field::Album ? SumUpAlbums(library) : SumUpValues(grouping, library);
}

}  // namespace tavrel::host
