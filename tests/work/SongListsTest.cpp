// Twice the library is at most twice the work of what lists, sorts, finds and counts songs.
#include <gtest/gtest.h>

#include <charconv>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "host/commands/SongOrder.h"
#include "host/library/PlaylistTree.h"
#include "host/library/Playlists.h"
#include "host/library/SongMatching.h"
#include "host/library/SongPlaces.h"
#include "host/library/SongSums.h"
#include "host/output/Csv.h"
#include "host/output/HeldRows.h"
#include "host/output/Nearest.h"
#include "host/page/ColumnMaker.h"
#include "host/page/SongBlock.h"
#include "tests/work/WorkCount.h"

namespace tavrel::test {
namespace {

using namespace tavrel::host;

// ---- A library of ordinary songs, in lists of forty ---------------------------------------------

constexpr std::int32_t kListSize = 40;
std::int32_t songCount = 0;
std::vector<std::int32_t> firstSongs;  // of the lists; a list's handle points to its element
std::int32_t all = 0;

PlaylistRecord* HandleOf(std::int32_t* first) {
  return reinterpret_cast<PlaylistRecord*>(first);
}

std::int32_t SongAt(const PlaylistRecord* playlist, std::int32_t index) noexcept {
  return *reinterpret_cast<const std::int32_t*>(playlist) + index;
}

std::int32_t Visit(const PlaylistRecord* playlist, std::int32_t index, PropertyVisitor visitor,
                   void* context) noexcept {
  const std::int32_t song = SongAt(playlist, index);
  const std::string number = std::to_string(100000 + song * 7919 % 100000);
  const std::string name = "Étude No. " + number;
  const std::string id = std::to_string(song);
  std::int32_t count = 0;
  const auto show = [&](const char* key, const std::string& text, const char* type) {
    ++count;
    visitor(key, text.c_str(), type, context);
  };
  show("Track ID", id, "integer");
  show("Name", name, "string");
  show("Artist", "Artist " + number.substr(0, 5), "string");
  show("Album", "Album, \"the " + number.substr(2) + "th\"", "string");
  show("Year", std::to_string(1900 + song % 100), "integer");
  show("Total Time", number, "integer");
  show("Sort Name", name, "string");
  show("Location", "http://radio.example.org/" + number, "string");
  return count;
}

std::int32_t TrackId(const PlaylistRecord* playlist, std::int32_t index, const char*, char* buffer,
                     std::int32_t size) noexcept {
  const std::int32_t song = SongAt(playlist, index);
  const char* end = std::to_chars(buffer, buffer + size - 1, song).ptr;
  buffer[end - buffer] = '\0';
  return static_cast<std::int32_t>(end - buffer + 1);
}

LibraryFunctions FunctionsOfLibrary(std::int32_t songs) {
  songCount = songs;
  firstSongs.clear();
  for (std::int32_t first = 0; first < songs; first += kListSize) firstSongs.push_back(first);
  LibraryFunctions functions{};
  functions.openAllSongs = []() noexcept { return HandleOf(&all); };
  functions.getSongCount = [](const PlaylistRecord* playlist) noexcept {
    return playlist == HandleOf(&all) ? songCount : kListSize;
  };
  functions.visitSongProperties = Visit;
  functions.getSongProperty = TrackId;
  return functions;
}

std::vector<host::Playlist> Playlists() {
  std::vector<host::Playlist> playlists;
  for (std::int32_t& first : firstSongs) {
    const auto number = static_cast<std::int32_t>(playlists.size());
    host::Playlist playlist{2, number, "List", 0, kListSize, HandleOf(&first)};
    playlist.id = std::to_string(number);
    playlist.parent = std::to_string(number / 2);  // deep folders
    playlists.push_back(playlist);
  }
  return playlists;
}

std::vector<std::int32_t> AllSongs() {
  std::vector<std::int32_t> positions;
  for (std::int32_t i = 0; i < songCount; ++i) positions.push_back(i);
  return positions;
}

// ---- The tests ----------------------------------------------------------------------------------

template <typename Use>
void ExpectDoubledWithTheSongs(const std::string& what, Use use) {
  constexpr std::int32_t kSongs = 2000;
  WorkCount work[2];
  for (const std::int32_t factor : {1, 2}) {
    const LibraryFunctions library = FunctionsOfLibrary(factor * kSongs);
    work[factor - 1] = WorkOf([&] { use(library); });
  }
  ExpectDoubled(work[0], work[1], what);
}

TEST(WorkOnLists, OfSortedSongsDoubles) {
  ExpectDoubledWithTheSongs("songs --sort", [](const LibraryFunctions& library) {
    std::vector<std::int32_t> positions = AllSongs();
    SortSongs(library, library.openAllSongs(), {Field::Artist, Field::Year, Field::Name}, true,
              positions);
    EXPECT_NE(positions, AllSongs());
  });
}

class Counter : public Sink {
 public:
  void Write(std::string_view text) override { size += text.size(); }
  std::size_t size = 0;
};

TEST(WorkOnLists, OfEveryFieldDoubles) {
  ExpectDoubledWithTheSongs("songs --fields all", [](const LibraryFunctions& library) {
    PlaylistRecord* songs = library.openAllSongs();
    OtherKeys keys;
    SongRecordReader reader(library, FieldSet().set());
    reader.ReadAllKeys(keys);
    Counter counter;
    CsvWriter writer(counter, Separation::Commas, false);
    HeldRows held;
    for (const std::int32_t song : AllSongs()) {
      const SongRecord& record = reader.Read(songs, song);
      for (std::size_t i = 0; i < kFieldCount; ++i) {
        writer.Add(record.Text(static_cast<Field>(i)).value_or(""));
      }
      for (std::size_t i = 0; i < keys.All().size(); ++i) {
        writer.Add(record.Other(i).text.value_or(""));
      }
      held.Add(writer.Row(), kFieldCount + keys.All().size());
      writer.DropRow();
    }
    CollectOtherKeys(library, songs, songCount / 2, keys);
    for (const HeldRows::Row& row : held.All()) {
      writer.SetRow(row.text, row.columns);
      writer.EndRow();
    }
    EXPECT_GT(counter.size, 100u * static_cast<unsigned>(songCount));
  });
}

TEST(WorkOnLists, OfColumnsOfThePageDoubles) {
  ExpectDoubledWithTheSongs("page", [](const LibraryFunctions& library) {
    NumberRoom room;
    ColumnMaker columns(static_cast<std::size_t>(songCount), room);
    SongWalk walk(library, columns.Fields());
    SongBlock block;
    for (std::int32_t song = 0; song < songCount; ++song) {
      block.Clear();
      walk.Show(library.openAllSongs(), song, block);
      columns.Add(block);
    }
    const std::vector<PageColumn> made = columns.Take();
    EXPECT_EQ(made.front().texts.TextCount(), static_cast<std::size_t>(songCount) + 1);
    EXPECT_GE(Pack(made.front().texts.Numbers()).bytes.size(), static_cast<std::size_t>(songCount));
  });
}

TEST(WorkOnLists, OfFoundSongsDoubles) {
  ExpectDoubledWithTheSongs("search", [](const LibraryFunctions& library) {
    SongQuery query;
    query.words = {"etude", "artist 1"};
    EXPECT_FALSE(MatchSongs(library, query, 0).empty());
  });
}

TEST(WorkOnLists, OfSumsDoubles) {
  for (const Grouping& grouping :
       {Grouping{"artist", Field::Artist, false}, Grouping{"album", Field::Album, false},
        Grouping{"year", Field::Year, true}}) {
    ExpectDoubledWithTheSongs(
        "stats --by " + std::string(grouping.name),
        [&](const LibraryFunctions& library) { EXPECT_GT(SumUp(grouping, library).size(), 90u); });
  }
}

TEST(WorkOnLists, OfListsThatHoldASongDoubles) {
  ExpectDoubledWithTheSongs("playlists --with", [](const LibraryFunctions& library) {
    const std::vector<host::Playlist> playlists = Playlists();
    EXPECT_EQ(MakeTree(playlists).size(), playlists.size());
    SongQuery query;
    query.words = {"etude"};
    EXPECT_EQ(MatchSongs(library, query, 0).size(), static_cast<std::size_t>(songCount));
    const SongNumbers numbers(library);
    for (const host::Playlist& playlist : playlists) EXPECT_GE(numbers.Of(playlist.handle, 1), 0);
  });
}

TEST(WorkOnLists, OfWordsThatComeNearDoubles) {
  const auto work = [](std::size_t count) {
    std::vector<std::string> known;
    for (std::size_t i = 0; i < count; ++i) known.push_back("command " + std::to_string(10000 + i));
    return WorkOf([&] { EXPECT_EQ(Nearest("comand 10007", known).size(), kMostNear); });
  };
  ExpectDoubled(work(2000), work(4000), "words that come near");
  const auto workOf = [](std::size_t length) {
    const std::vector<std::string> known(20, "songs");
    const std::string word(length, 'x');
    return WorkOf([&] { EXPECT_TRUE(Nearest(word, known).empty()); });
  };
  ExpectDoubled(workOf(40000), workOf(80000), "a long word that nobody meant");
}

}  // namespace
}  // namespace tavrel::test
