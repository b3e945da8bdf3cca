// Twice the library is at most twice the work of the host, whatever texts it holds.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "host/checks/SongChecks.h"
#include "host/commands/SpellingHint.h"
#include "host/copying/CopyPlan.h"
#include "host/export/ExportPlan.h"
#include "host/export/M3u.h"
#include "host/export/Xspf.h"
#include "host/library/FileFinder.h"
#include "host/library/PlaylistSearch.h"
#include "host/library/Statistics.h"
#include "host/naming/FileNames.h"
#include "host/output/Csv.h"
#include "host/output/Failure.h"
#include "host/output/Json.h"
#include "host/output/Table.h"
#include "host/output/Text.h"
#include "tests/work/WorkCount.h"

// The seeds of the host's hash tables, the same in each run, so that each run counts the same.
extern "C" int __wrap_getentropy(void* bytes, std::size_t count);
extern "C" int __wrap_getentropy(void* bytes, std::size_t count) {
  std::memset(bytes, 0x5A, count);
  return 0;
}

namespace tavrel::test {
namespace {

using namespace tavrel::host;

constexpr std::size_t kCount = 2000;

// ---- A library of songs that are all texts ------------------------------------------------------

std::vector<std::string> names;  // of the songs; each is also its artist and its genre

void Give(const std::string& text, char* buffer, std::int32_t& size) {
  size = static_cast<std::int32_t>(text.size() + 1);
  if (buffer != nullptr) std::memcpy(buffer, text.c_str(), text.size() + 1);
}

LibraryFunctions LibraryOf(std::vector<std::string> texts) {
  names = std::move(texts);
  LibraryFunctions functions{};
  functions.openAllSongs = []() noexcept { return reinterpret_cast<PlaylistRecord*>(&names); };
  functions.getSongCount = [](const PlaylistRecord*) noexcept {
    return static_cast<std::int32_t>(names.size());
  };
  functions.visitSongProperties = [](const PlaylistRecord*, std::int32_t, PropertyVisitor,
                                     void*) noexcept { return 0; };
  functions.getSongInfo = [](PlaylistRecord*, std::int32_t index, SongInfo* info) noexcept {
    const std::string& name = names[static_cast<std::size_t>(index)];
    Give(name, info->name, info->nameSize);
    Give(name, info->artist, info->artistSize);
    Give(name, info->album, info->albumSize);
    Give(name, info->genre, info->genreSize);
    info->locationSize = 0;
    info->totalTime = info->playCount = index;
    return 1;
  };
  return functions;
}

std::vector<std::string> OrdinaryNames(std::size_t count) {
  std::vector<std::string> made;
  for (std::size_t i = 0; i < count; ++i) made.push_back("Étude No. " + std::to_string(100000 + i));
  return made;
}

#if defined(__GLIBCXX__) && defined(__x86_64__)
// ASCII texts that have one and the same value of std::hash, whose seed everybody knows: the second half of a
// text makes up for what the first one has done.
std::vector<std::string> NamesOfEqualHash(std::size_t count) {
  constexpr std::uint64_t kFactor = 0xC6A4A7935BD1E995u;
  constexpr std::uint64_t kTarget = 0x123456789ABCDEFu;
  std::uint64_t inverse = kFactor;  // of the factor, by Newton's method
  for (int i = 0; i < 6; ++i) inverse *= 2 - kFactor * inverse;

  std::vector<std::string> made;
  for (std::uint64_t number = 0; made.size() < count; ++number) {
    std::uint64_t first =
        0x2020202020202020u;  // eight blanks, and digits to the base of 64 upon them
    for (int i = 0; i < 4; ++i) first += (number >> 6 * i & 63) << 8 * i;
    std::uint64_t mixed = first * kFactor;
    mixed = (mixed ^ mixed >> 47) * kFactor;
    const std::uint64_t state = (0xC70F6907u ^ (16 * kFactor) ^ mixed) * kFactor;
    std::uint64_t second = (state ^ kTarget) * inverse;
    second = (second ^ second >> 47) * inverse;
    std::string name(16, '\0');
    std::memcpy(name.data(), &first, 8);
    std::memcpy(name.data() + 8, &second, 8);
    const bool isAscii = (second & 0x8080808080808080u) == 0;
    if (isAscii && name.find('\0') == std::string::npos) made.push_back(name);
  }
  return made;
}
#endif

// ---- The tests ----------------------------------------------------------------------------------

// make(count): names of that many songs, or one text that is so long.
template <class Input>
void ExpectDoubledFor(const std::string& what, Input (*make)(std::size_t), std::size_t count,
                      const std::function<void(const Input&)>& use) {
  const Input small = make(count);
  const Input large = make(2 * count);
  ExpectDoubled(WorkOf([&] { use(small); }), WorkOf([&] { use(large); }), what);
}

using Texts = std::vector<std::string>;

void TakeFileNames(const Texts& stems) {
  FileNames files;
  for (const std::string& stem : stems) (void)files.Take(stem, ".png");
}

TEST(WorkOfTheHost, OnNamesOfCoversDoubles) {
  ExpectDoubledFor<Texts>("names of covers", OrdinaryNames, kCount, TakeFileNames);
  // Between powers of ten: each digit of the numbers behind the names costs a look.
  ExpectDoubledFor<Texts>(
      "equal names of covers", [](std::size_t count) { return Texts(count, "cover"); }, 4500,
      TakeFileNames);
}

void Collect(const Texts& texts) {
  const LibraryFunctions library = LibraryOf(texts);
  EXPECT_EQ(CollectStatistics(library).songs, static_cast<std::int64_t>(texts.size()));
}

TEST(WorkOfTheHost, OnStatisticsDoubles) {
  ExpectDoubledFor<Texts>("statistics", OrdinaryNames, kCount, Collect);
}

#if defined(__GLIBCXX__) && defined(__x86_64__)
TEST(WorkOfTheHost, DoublesForNamesThatWereMadeUpToMeetInOnePlace) {
  const Texts some = NamesOfEqualHash(100);
  for (const std::string& name : some) {
    ASSERT_EQ(std::hash<std::string>()(name), std::hash<std::string>()(some[0]));
  }
  ExpectDoubledFor<Texts>("statistics of made-up names", NamesOfEqualHash, kCount, Collect);
}
#endif

// Every song has a file.
class EveryFile final : public FileFinder {
 public:
  SongFile Find(std::optional<std::string_view> location, std::string_view) override {
    return {FileStatus::Found, location.value_or(""), {}, {}};
  }
  SongFile FindPath(std::string_view path) override { return {FileStatus::Found, path, {}, {}}; }
};

void PlanToCopy(const Texts& texts) {
  EveryFile files;
  LibraryFunctions library = LibraryOf(texts);
  library.files = &files;
  library.visitSongProperties = [](const PlaylistRecord*, std::int32_t index, PropertyVisitor visit,
                                   void* context) noexcept {
    const std::string& name = names[static_cast<std::size_t>(index)];
    for (const char* key : {"Name", "Artist", "Album"}) visit(key, name.c_str(), "string", context);
    const std::string location = name + std::to_string(index) + ".mp3";
    visit("Location", location.c_str(), "string", context);
    return 4;
  };
  const auto count = static_cast<std::int32_t>(texts.size());
  const host::Playlist list{2, 0, "Everything", 0, count, library.openAllSongs()};
  const CopyPlan plan = PlanCopies(library, {&list}, NamePattern(kUsualPattern));
  EXPECT_EQ(plan.files.size(), texts.size());
}

TEST(WorkOfTheHost, OnPlansOfCopiesDoubles) {
  ExpectDoubledFor<Texts>("plans of copies", OrdinaryNames, kCount, PlanToCopy);
  ExpectDoubledFor<Texts>(
      "plans of copies of equal songs", [](std::size_t count) { return Texts(count, "song"); },
      4500, PlanToCopy);
}

void CheckAll(const Texts& texts) {
  const LibraryFunctions library = LibraryOf(texts);
  const std::size_t groups = CheckSongs(library, [] {}).duplicates.size();
  EXPECT_EQ(groups, texts[0] == texts[1] ? 1u : 0u);
}

TEST(WorkOfTheHost, OnSongsThatAreThereTwiceDoubles) {
  ExpectDoubledFor<Texts>("songs that differ", OrdinaryNames, kCount, CheckAll);
  ExpectDoubledFor<Texts>(
      "songs that are all alike", [](std::size_t count) { return Texts(count, "song"); }, kCount,
      CheckAll);
}

std::string HintFor(const Texts& texts, const std::string& wanted) {
  std::vector<host::Playlist> playlists;
  for (const std::string& name : texts) {
    playlists.push_back({2, static_cast<std::int32_t>(playlists.size()), name, 0, 0, nullptr});
  }
  try {
    return FindPlaylist(playlists, wanted).name.value_or("");
  } catch (const Failure& failure) {
    return failure.what();
  }
}

TEST(WorkOfTheHost, OnHintsDoubles) {
  ExpectDoubledFor<Texts>("names that come near", OrdinaryNames, kCount, [](const Texts& texts) {
    EXPECT_NE(HintFor(texts, "Etude No. 100007").find("do you mean"), std::string::npos);
  });
  ExpectDoubledFor<Texts>("spellings", OrdinaryNames, kCount, [](const Texts& texts) {
    const LibraryFunctions library = LibraryOf(texts);
    EXPECT_NE(SpellingHint(library, {"etude", "etude", "etude"}).find("Étude"), std::string::npos);
  });
}

// One step for each pair of their characters would be 36,000 for each name.
TEST(WorkOfTheHost, OnNamesThatComeNearIsThatOfReadingThem) {
  const Texts texts(500, std::string(190, 'a') + "b");
  const WorkCount work = WorkOf([&] { (void)HintFor(texts, std::string(190, 'b')); });
  EXPECT_LT(work.steps, texts.size() * 190 * 60);
}

// The longest name grows with the number of rows.
void ShowTable(const Texts& texts) {
  const Table table({{.title = "Name", .weight = 1}, {.title = "Artist", .weight = 1}},
                    [&](Rows& rows) {
                      for (const std::string& text : texts) {
                        rows.Add(text);
                        rows.Add(text);
                      }
                    });
  for (const std::size_t width : {0u, 80u}) {
    EXPECT_EQ(table.Lines({width, false}).size(), texts.size() + 1);
  }
}

TEST(WorkOfTheHost, OnTablesDoubles) {
  ExpectDoubledFor<Texts>(
      "tables",
      [](std::size_t count) {
        Texts texts = OrdinaryNames(count);
        texts[count / 2] = std::string(20 * count, 'x');
        return texts;
      },
      kCount, ShowTable);
}

class Nowhere : public Sink {
 public:
  void Write(std::string_view text) override { bytes += text.size(); }
  std::size_t bytes = 0;
};

void WriteEntries(const Texts& texts, PlaylistText&& list) {
  for (const std::string& text : texts) {
    const std::string path = "/music/" + text;
    PlaylistEntry entry;
    entry.name = entry.artist = entry.album = text;
    entry.path = entry.written = path;
    list.Add(entry);
  }
  EXPECT_NE(list.Finish(), "");
}

void WriteCells(const Texts& texts) {
  Nowhere nowhere;
  CsvWriter csv(nowhere, Separation::Commas, false);
  JsonList json(nowhere);
  for (const std::string& text : texts) {
    csv.Add(text);
    csv.EndRow();
    json.Add(text);
  }
  EXPECT_GT(nowhere.bytes, 0u);
}

// Half of them are folders, each within the one before it.
void Plan(const Texts& texts) {
  std::vector<host::Playlist> playlists;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    host::Playlist playlist{2, static_cast<std::int32_t>(i), texts[i], 0, 0, nullptr};
    playlist.id = std::to_string(i);
    if (i > 1) playlist.parent = std::to_string(i / 2 * 2 - 2);
    if (i % 2 == 0) playlist.type = PlaylistType::Folder;
    playlists.push_back(std::move(playlist));
  }
  EXPECT_EQ(PlanLists(playlists, ChooseOwn(playlists), Layout::Folders, ".m3u8").size(),
            texts.size() / 2);
}

TEST(WorkOfTheHost, OnExportedListsDoubles) {
  const auto oddNames = [](std::size_t count) {
    Texts made = OrdinaryNames(count);
    for (std::string& name : made) name += "\n<&\u202E";
    return made;
  };
  for (const auto make : {+oddNames, &OrdinaryNames}) {
    ExpectDoubledFor<Texts>("M3U8", make, kCount, [](const Texts& texts) {
      WriteEntries(texts, M3uText("list", M3uEncoding::Utf8));
    });
    ExpectDoubledFor<Texts>("M3U", make, kCount, [](const Texts& texts) {
      WriteEntries(texts, M3uText("list", M3uEncoding::Latin1));
    });
    ExpectDoubledFor<Texts>("XSPF", make, kCount,
                            [](const Texts& texts) { WriteEntries(texts, XspfText("list")); });
    ExpectDoubledFor<Texts>("CSV and JSON", make, kCount, WriteCells);
    ExpectDoubledFor<Texts>("files of lists", make, kCount, Plan);
  }
}

std::string Repeat(std::string_view piece, std::size_t count) {
  std::string text;
  while (count-- > 0) text += piece;
  return text;
}

// What a terminal would not show as it is, as the numbers of its bytes.
std::string NameOfPiece(std::string_view piece) {
  std::string name;
  for (const char byte : piece) {
    name += byte > ' ' && byte < '\x7F'
                ? std::string(1, byte)
                : std::to_string(static_cast<int>(static_cast<unsigned char>(byte))) + " ";
  }
  return name;
}

TEST(WorkOfTheHost, OnOddTextsDoubles) {
  for (const std::string piece :
       {"\u0301", "\u202E", "\n ", " ", "\xE9", "\"", "\U000E0041", "交"}) {
    const std::string name = NameOfPiece(piece);
    const std::string small = "e" + Repeat(piece, 20000);
    const std::string large = "e" + Repeat(piece, 40000);
    const auto json = [](const std::string& text) { return JsonValue(text).Text().size(); };
    ExpectDoubled(WorkOf([&] { EXPECT_NE(Clean(small), ""); }),
                  WorkOf([&] { EXPECT_NE(Clean(large), ""); }), "cleaning of " + name);
    ExpectDoubled(WorkOf([&] { EXPECT_NE(Compose(small), ""); }),
                  WorkOf([&] { EXPECT_NE(Compose(large), ""); }), "composing of " + name);
    ExpectDoubled(WorkOf([&] { EXPECT_NE(json(small), 0u); }),
                  WorkOf([&] { EXPECT_NE(json(large), 0u); }), "JSON of " + name);
  }
}

}  // namespace
}  // namespace tavrel::test
