#include "host/page/ContentsReader.h"

#include <algorithm>
#include <array>
#include <future>
#include <optional>
#include <utility>

#include "host/library/FieldTexts.h"
#include "host/library/PlaylistTree.h"
#include "host/library/SongPlaces.h"
#include "host/output/Text.h"
#include "host/page/ColumnMaker.h"
#include "host/page/InBackground.h"
#include "host/page/LargeHeap.h"
#include "host/page/SongBlock.h"
#include "host/page/SongPlaceMaker.h"

namespace tavrel::host {
namespace {

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

// A look at a block of songs, by another thread.
using Look = std::shared_future<void>;

// Begins one that waits for the one before it, which may be none, and fails as that does.
template <typename Function>
Look LookAfter(Look before, Function look) {
  return InBackground([before = std::move(before), look]() mutable {
    if (before.valid()) std::exchange(before, {}).get();
    look();
  });
}

PageContents RoomFor(std::size_t songs) {
  constexpr std::size_t kOfPlaces = 2;  // columns
  PageContents contents;
  contents.room.Reserve(ColumnMaker::NumbersOf(songs) + kOfPlaces * songs);
  return contents;
}

// While the library shows some songs, other threads look at those before them: one puts their fields into columns, one
// finds where they belong.
class ContentsMaker {
 public:
  ContentsMaker(const LibraryFunctions& library, bool withPaths)
      : library_(library),
        songs_(library.openAllSongs()),
        count_(library.getSongCount(songs_)),
        contents_(RoomFor(Songs())),
        columns_(Songs(), contents_.room),
        places_(library, withPaths, Songs(), contents_.room) {
    ids_.reserve(Songs());
  }

  void ReadSongs() {
    SongWalk walk(library_, columns_.Fields() | SongPlaceMaker::Fields());
    std::array<SongBlock, 4> blocks;
    struct Looks {
      Look fields;
      Look places;
    };
    std::array<Looks, 4> looks;
    const auto await = [](const Looks& begun) {
      if (begun.fields.valid()) begun.fields.get();
      if (begun.places.valid()) begun.places.get();
    };
    std::size_t before = 0;
    for (std::int32_t position = 0; position < count_;) {
      const std::size_t turn = (before + 1) % blocks.size();
      await(looks[turn]);
      SongBlock& block = blocks[turn];
      block.Clear();
      while (position < count_ && !block.IsFull()) walk.Show(songs_, position++, block);
      looks[turn] = {LookAfter(looks[before].fields, [this, &block] { AddFields(block); }),
                     LookAfter(looks[before].places, [this, &block] { places_.Add(block); })};
      before = turn;
    }
    await(looks[before]);
  }

  // The playlists take the library, what is packed takes none: all goes on at a time.
  PageContents Take() {
    auto fields = InBackground([this] { return columns_.Take(); });
    auto places = InBackground([this] {
      places_.MoveTo(contents_);
      return places_.TakeColumns();
    });
    std::vector<PagePlaylist> playlists = ReadPagePlaylists(library_, std::move(ids_));
    contents_.columns = fields.get();
    for (PageColumn& column : places.get()) contents_.columns.push_back(std::move(column));
    contents_.playlists = std::move(playlists);
    return std::move(contents_);
  }

 private:
  [[nodiscard]] std::size_t Songs() const noexcept {
    return static_cast<std::size_t>(std::max(count_, 0));
  }

  void AddFields(const SongBlock& block) {
    columns_.Add(block);
    block.ForEachText(IndexOf(Field::Seconds), [this](std::size_t, std::string_view text) {
      contents_.time += std::clamp<std::int64_t>(NumberIn(text).value_or(0), 0, INT32_MAX);
    });
    block.ForEachText(SongBlock::kTrackId, [this](std::size_t song, std::string_view text) {
      const auto position = static_cast<std::int32_t>(contents_.songs + song);
      if (const auto id = TrackIdOf(text)) ids_.emplace_back(*id, position);
    });
    contents_.songs += block.Songs();
  }

  const LibraryFunctions& library_;
  PlaylistRecord* songs_;
  std::int32_t count_;
  PageContents contents_;
  ColumnMaker columns_;
  SongPlaceMaker places_;
  std::vector<NumberedId> ids_;
};

}  // namespace

PageContents ReadContents(const LibraryFunctions& library, bool withPaths) {
  constexpr std::int32_t kManySongs = 10'000;
  if (library.getSongCount(library.openAllSongs()) >= kManySongs) PreferHugePages();
  ContentsMaker maker(library, withPaths);
  maker.ReadSongs();
  return maker.Take();
}

}  // namespace tavrel::host
