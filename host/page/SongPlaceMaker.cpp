#include "host/page/SongPlaceMaker.h"

#include <algorithm>
#include <utility>

#include "host/library/FieldTexts.h"
#include "host/library/SongRecord.h"

namespace tavrel::host {

namespace {

PageColumn ColumnOf(Field field, std::size_t songs, NumberRoom& room) {
  const std::span<std::int64_t> numbers = room.Take(songs);
  return {field, ColumnKind::Text, TextColumn(numbers), numbers};
}

}  // namespace

SongPlaceMaker::SongPlaceMaker(const LibraryFunctions& library, bool withPaths, std::size_t songs,
                               NumberRoom& room)
    : location_(library.files), states_(ColumnOf(Field::Status, songs, room)) {
  if (withPaths) paths_ = ColumnOf(Field::Path, songs, room);
  parts_.reserve(songs);
  plays_.reserve(songs);
}

FieldSet SongPlaceMaker::Fields() {
  return SetOf({Field::Location, Field::Type, Field::Artist, Field::AlbumArtist, Field::Album,
                Field::Compilation, Field::Plays});
}

void SongPlaceMaker::Add(const SongBlock& songs) {
  FieldReader locations(songs, Field::Location);
  FieldReader types(songs, Field::Type);
  FieldReader artists(songs, Field::Artist);
  FieldReader albumArtists(songs, Field::AlbumArtist);
  FieldReader albums(songs, Field::Album);
  FieldReader compilations(songs, Field::Compilation);
  FieldReader plays(songs, Field::Plays);
  for (std::size_t i = 0; i < songs.Songs(); ++i) {
    FindFile(locations.Of(i), types.Of(i).value_or(""));
    Song song;
    song.location = location_.WrittenPath();
    song.artist = artists.Of(i);
    song.albumArtist = albumArtists.Of(i);
    song.album = albums.Of(i);
    song.isCompilation = compilations.Of(i) == "true";
    parts_.push_back(grouping_.Add(song));
    const std::int64_t count = NumberIn(plays.Of(i).value_or("")).value_or(0);
    plays_.push_back(static_cast<std::int32_t>(std::clamp<std::int64_t>(count, 0, INT32_MAX)));
  }
}

void SongPlaceMaker::FindFile(std::optional<std::string_view> location, std::string_view type) {
  location_.Read(location, type, true);
  const SongFile& file = location_.File();
  tally_.Add(file);
  if (file.status) states_.texts.Set(parts_.size(), StatusName(*file.status));
  if (!paths_) return;
  // Where the file is; where it should be when it is missing.
  const bool isMissing = file.path.empty() && location;
  paths_->texts.Set(parts_.size(), isMissing ? file.sought : file.path);
}

std::vector<PageColumn> SongPlaceMaker::TakeColumns() {
  std::vector<PageColumn> columns;
  columns.push_back(std::move(states_));
  if (paths_) columns.push_back(std::move(*paths_));
  for (PageColumn& column : columns) column.End();
  return columns;
}

void SongPlaceMaker::MoveTo(PageContents& contents) {
  contents.tally = std::move(tally_);
  MoveAlbumsTo(contents);
}

void SongPlaceMaker::MoveAlbumsTo(PageContents& contents) const {
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
  contents.albumOf.reserve(parts_.size());
  for (std::size_t song = 0; song < parts_.size(); ++song) {
    const std::int64_t number = parts_[song] ? numbers[*parts_[song]] : 0;
    contents.albumOf.push_back(number);
    if (number == 0) continue;
    PageAlbum& album = contents.albums[static_cast<std::size_t>(number - 1)];
    ++album.songs;
    album.plays += plays_[song];
    album.positions.push_back(static_cast<std::int32_t>(song));
  }
  contents.packedAlbums = Pack(contents.albumOf);
}

}  // namespace tavrel::host
