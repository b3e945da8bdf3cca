#include "host/page/Contents.h"

#include <algorithm>
#include <array>
#include <future>
#include <optional>
#include <stdexcept>
#include <utility>

#include "host/library/AlbumGrouping.h"
#include "host/library/PlaylistTree.h"
#include "host/library/SongPlaces.h"
#include "host/library/SongRecord.h"
#include "host/output/Text.h"
#include "host/page/ColumnMaker.h"
#include "host/page/SongBlock.h"
#include "host/page/SongTexts.h"

namespace tavrel::host {
namespace {

constexpr std::int64_t kNoPart = -1;

class Albums {
 public:
  void Add(const Song& song) {
    const std::optional<std::size_t> part = grouping_.Add(song);
    parts_.push_back(part ? static_cast<std::int64_t>(*part) : kNoPart);
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
          parts_[song] == kNoPart ? 0 : numbers[static_cast<std::size_t>(parts_[song])];
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
std::vector<PagePlaylist> ReadPagePlaylists(const LibraryFunctions& library,
                                            std::vector<NumberedId> ids) {
  const std::vector<Playlist> playlists = ReadPlaylists(library);
  const SongNumbers numbers(library, std::move(ids));
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

// The number, as far as 32 bits have it.
std::int32_t Narrowed(std::int64_t number) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(number, INT32_MIN, INT32_MAX));
}

// While the library shows some songs, those before them are put into columns by another thread.
class ContentsMaker {
 public:
  ContentsMaker(const LibraryFunctions& library, bool withPaths)
      : library_(library), columns_(withPaths), location_(library.files) {}

  void ReadSongs() {
    PlaylistRecord* const all = library_.openAllSongs();
    const std::int32_t count = library_.getSongCount(all);
    SongWalk walk(library_, columns_.Fields() | FieldsOfSong() | SetOf({Field::Type}));
    std::array<SongBlock, 2> blocks;
    std::future<void> adding;
    std::size_t turn = 0;
    for (std::int32_t position = 0; position < count; turn = 1 - turn) {
      SongBlock& block = blocks[turn];
      block.Clear();
      while (position < count && !block.IsFull()) walk.Show(all, position++, block);
      if (adding.valid()) adding.get();
      adding = std::async(std::launch::async, [this, &block] { Add(block); });
    }
    if (adding.valid()) adding.get();
  }

  PageContents Take() {
    contents_.columns = columns_.Take();
    albums_.MoveTo(contents_);
    contents_.playlists = ReadPagePlaylists(library_, std::move(ids_));
    return std::move(contents_);
  }

 private:
  void Add(const SongBlock& songs) {
    for (std::size_t song = 0; song < songs.Songs(); ++song) {
      TakeTexts(songs, song);
      FindFile();
      columns_.Add(texts_);
      AddToAlbum();
      contents_.time +=
          std::clamp<std::int64_t>(texts_.NumberOf(Field::Seconds).value_or(0), 0, INT32_MAX);
      ++contents_.songs;
    }
  }

  void TakeTexts(const SongBlock& songs, std::size_t song) {
    texts_.Clear();
    bool hasId = false;
    songs.ForEachPair(song, [&](std::size_t key, std::optional<std::string_view> text) {
      if (key != SongWalk::kTrackId) {
        texts_.Take(static_cast<Field>(key), text);
      } else if (!std::exchange(hasId, true)) {
        const auto id = TrackIdOf(text.value_or(""));
        if (id) ids_.emplace_back(*id, static_cast<std::int32_t>(contents_.songs));
      }
    });
  }

  void FindFile() {
    const auto location = texts_.Of(Field::Location);
    location_.Read(location, texts_.Of(Field::Type).value_or(""), true);
    const SongFile& file = location_.File();
    contents_.tally.Add(file);
    if (file.status) texts_.Take(Field::Status, StatusName(*file.status));
    // Where the file is; where it should be when it is missing.
    const std::string_view path = file.path.empty() && location ? file.sought : file.path;
    texts_.Take(Field::Path, path);
  }

  void AddToAlbum() {
    Song song;
    song.location = location_.WrittenPath();
    song.artist = texts_.Of(Field::Artist);
    song.albumArtist = texts_.Of(Field::AlbumArtist);
    song.album = texts_.Of(Field::Album);
    song.playCount = Narrowed(texts_.NumberOf(Field::Plays).value_or(0));
    song.isCompilation = texts_.Is(Field::Compilation);
    albums_.Add(song);
  }

  const LibraryFunctions& library_;
  ColumnMaker columns_;
  LocationReader location_;
  Albums albums_;
  std::vector<NumberedId> ids_;
  SongTexts texts_;  // of the song that is added
  PageContents contents_;
};

}  // namespace

const PageColumn& PageContents::Of(Field field) const {
  const auto found =
      std::find_if(columns.begin(), columns.end(),
                   [field](const PageColumn& column) { return column.field == field; });
  if (found == columns.end()) throw std::out_of_range("the page has no such column");
  return *found;
}

PageContents ReadContents(const LibraryFunctions& library, bool withPaths) {
  ContentsMaker maker(library, withPaths);
  maker.ReadSongs();
  return maker.Take();
}

}  // namespace tavrel::host
