#include "host/page/Contents.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <stdexcept>

#include "host/library/AlbumGrouping.h"
#include "host/library/PlaylistTree.h"
#include "host/library/SongPlaces.h"
#include "host/library/SongRecord.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

struct Kept {
  Field field;
  ColumnKind kind;
};

// In the order in which the page offers them.
constexpr std::array kKept{
    Kept{Field::Name, ColumnKind::Text},         Kept{Field::Artist, ColumnKind::Text},
    Kept{Field::AlbumArtist, ColumnKind::Text},  Kept{Field::Album, ColumnKind::Text},
    Kept{Field::Composer, ColumnKind::Text},     Kept{Field::Genre, ColumnKind::Text},
    Kept{Field::Grouping, ColumnKind::Text},     Kept{Field::Year, ColumnKind::Number},
    Kept{Field::Disc, ColumnKind::Number},       Kept{Field::Track, ColumnKind::Number},
    Kept{Field::Seconds, ColumnKind::Seconds},   Kept{Field::Rating, ColumnKind::Rating},
    Kept{Field::Plays, ColumnKind::Number},      Kept{Field::Skips, ColumnKind::Number},
    Kept{Field::LastPlayed, ColumnKind::Day},    Kept{Field::Added, ColumnKind::Day},
    Kept{Field::Released, ColumnKind::Day},      Kept{Field::Comments, ColumnKind::Text},
    Kept{Field::Bpm, ColumnKind::Number},        Kept{Field::BitRate, ColumnKind::Number},
    Kept{Field::SampleRate, ColumnKind::Number}, Kept{Field::Size, ColumnKind::Kilobytes},
    Kept{Field::Kind, ColumnKind::Text},         Kept{Field::Series, ColumnKind::Text},
    Kept{Field::Season, ColumnKind::Number},     Kept{Field::Episode, ColumnKind::Number},
    Kept{Field::Loved, ColumnKind::Flag},        Kept{Field::Disabled, ColumnKind::Flag},
    Kept{Field::Compilation, ColumnKind::Flag},  Kept{Field::Explicit, ColumnKind::Flag},
    Kept{Field::Podcast, ColumnKind::Flag},      Kept{Field::Movie, ColumnKind::Flag},
    Kept{Field::TvShow, ColumnKind::Flag},       Kept{Field::Status, ColumnKind::Text},
    Kept{Field::Path, ColumnKind::Text},
};

constexpr std::int64_t kNone = -1;

// The days from the beginning of 1970 to "2009-11-05T08:13:42Z"; kNone for a day that never was.
std::int64_t DayOf(std::string_view date) noexcept {
  const auto part = [date](std::size_t from, std::size_t size) {
    int number = 0;
    std::from_chars(date.data() + from, date.data() + from + size, number);
    return number;
  };
  const std::chrono::year_month_day day(std::chrono::year(part(0, 4)),
                                        std::chrono::month(static_cast<unsigned>(part(5, 2))),
                                        std::chrono::day(static_cast<unsigned>(part(8, 2))));
  if (!day.ok()) return kNone;
  return std::chrono::sys_days(day).time_since_epoch().count();
}

// How many units it is, none below 0.
std::int64_t Rounded(std::int64_t number, std::int64_t unit) noexcept {
  const std::int64_t whole = std::max<std::int64_t>(number, 0);
  return whole / unit + (whole % unit >= unit / 2 ? 1 : 0);
}

std::int64_t NumberOf(const SongRecord& song, Field field, ColumnKind kind) {
  switch (kind) {
    case ColumnKind::Seconds:
      return song.Text(field) ? Rounded(song.Milliseconds(), 1000) : kNone;
    case ColumnKind::Day:
      return song.Text(field) ? DayOf(*song.Text(field)) : kNone;
    case ColumnKind::Kilobytes:
      return song.Number(field) ? Rounded(*song.Number(field), 1024) : kNone;
    case ColumnKind::Rating:
      return song.Is(Field::RatingComputed) ? kNone : song.Number(field).value_or(kNone);
    case ColumnKind::Flag:
      return song.Is(field) ? 1 : kNone;
    default:
      return song.Number(field).value_or(kNone);
  }
}

// As the columns have it: one higher, never below none, and exact as a number of a script.
std::int64_t Stored(std::int64_t number) noexcept {
  constexpr std::int64_t kLargestExact = (std::int64_t{1} << 53) - 2;
  return std::clamp(number, kNone, kLargestExact) + 1;
}

// Where the file is; where it should be when it is missing.
std::optional<std::string_view> PathOf(const SongRecord& song) {
  const auto path = song.Text(Field::Path);
  return path || !song.Text(Field::Location) ? path : song.SoughtPath();
}

class Albums {
 public:
  void Add(const Song& song) {
    const std::optional<std::size_t> part = grouping_.Add(song);
    parts_.push_back(part ? static_cast<std::int64_t>(*part) : kNone);
    plays_.push_back(std::max(song.playCount, 0));
  }

  void MoveTo(PageContents& contents) const {
    const std::vector<std::size_t> albums = grouping_.Albums();
    std::vector<std::int64_t> numbers(albums.size(), 0);
    for (std::size_t part = 0; part < albums.size(); ++part) {
      if (albums[part] == part) {
        contents.albums.push_back({grouping_.TitleOf(part), grouping_.ArtistOf(part)});
        numbers[part] = static_cast<std::int64_t>(contents.albums.size());
        continue;
      }
      numbers[part] = numbers[albums[part]];
      PageAlbum& album = contents.albums[static_cast<std::size_t>(numbers[part] - 1)];
      if (grouping_.ArtistOf(part) != grouping_.ArtistOf(albums[part])) {
        album.artist = kVariousArtists;
      }
    }
    for (std::size_t song = 0; song < parts_.size(); ++song) {
      const std::int64_t number =
          parts_[song] == kNone ? 0 : numbers[static_cast<std::size_t>(parts_[song])];
      contents.albumOf.push_back(number);
      if (number == 0) continue;
      PageAlbum& album = contents.albums[static_cast<std::size_t>(number - 1)];
      ++album.songs;
      album.plays += plays_[song];
      album.positions.push_back(static_cast<std::int32_t>(song));
    }
  }

 private:
  AlbumGrouping grouping_;
  std::vector<std::int64_t> parts_;  // of each song
  std::vector<std::int32_t> plays_;
};

// Folders, and the others that hold songs of the library's.
std::vector<PagePlaylist> ReadPagePlaylists(const LibraryFunctions& library) {
  const std::vector<Playlist> playlists = ReadPlaylists(library);
  const SongNumbers numbers(library);
  std::vector<PagePlaylist> kept;
  for (const TreeEntry& entry : MakeTree(playlists)) {
    const Playlist& playlist = playlists[entry.playlist];
    std::vector<std::int64_t> songs;
    for (std::int32_t i = 0; i < playlist.songCount; ++i) {
      const std::int32_t song = numbers.Of(playlist.handle, i);
      if (song >= 0) songs.push_back(song);
    }
    if (songs.empty() && playlist.type != PlaylistType::Folder) continue;
    kept.push_back({Clean(playlist.name.value_or("")), Clean(playlist.id), TypeName(playlist.type),
                    entry.depth, std::move(songs)});
  }
  return kept;
}

}  // namespace

std::string_view KindName(ColumnKind kind) {
  constexpr std::array<std::string_view, 7> kNames{"text",      "number", "seconds", "day",
                                                   "kilobytes", "rating", "flag"};
  return kNames.at(static_cast<std::size_t>(kind));
}

bool PageColumn::IsUsed() const noexcept {
  if (kind == ColumnKind::Text) return texts.Texts().size() > 1;
  return std::any_of(numbers.begin(), numbers.end(),
                     [](std::int64_t number) { return number != 0; });
}

const PageColumn& PageContents::Of(Field field) const {
  const auto found =
      std::find_if(columns.begin(), columns.end(),
                   [field](const PageColumn& column) { return column.field == field; });
  if (found == columns.end()) throw std::out_of_range("the page has no such column");
  return *found;
}

PageContents ReadContents(const LibraryFunctions& library, bool withPaths) {
  PageContents contents;
  FieldSet wanted = FieldsOfSong() | SetOf({Field::RatingComputed, Field::Type});
  for (const Kept& kept : kKept) {
    wanted.set(IndexOf(kept.field));
    if (kept.field != Field::Path || withPaths) contents.columns.push_back({kept.field, kept.kind});
  }
  Albums albums;
  ForEachRecord(library, library.openAllSongs(), wanted,
                [&](std::int32_t, const SongRecord& record) {
                  for (PageColumn& column : contents.columns) {
                    if (column.field == Field::Path) {
                      column.texts.Add(PathOf(record));
                    } else if (column.kind == ColumnKind::Text) {
                      column.texts.Add(record.Text(column.field));
                    } else {
                      column.numbers.push_back(Stored(NumberOf(record, column.field, column.kind)));
                    }
                  }
                  albums.Add(AsSong(record));
                  contents.tally.Add(record);
                  contents.time += std::clamp<std::int64_t>(record.Milliseconds(), 0, INT32_MAX);
                  ++contents.songs;
                });
  albums.MoveTo(contents);
  contents.playlists = ReadPagePlaylists(library);
  return contents;
}

}  // namespace tavrel::host
