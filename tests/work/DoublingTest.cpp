// Twice the input is at most twice the work, and a little for what sorts: of a whole load, of each question
// a host can ask, and of texts that are made to be slow.
#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

#include "agent/Exports.h"
#include "bench/hostile/Families.h"
#include "tests/support/ArtworkHome.h"
#include "tests/support/CacheFiles.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/RingtoneScene.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/Soak.h"
#include "tests/support/TemporaryHome.h"
#include "tests/work/WorkCount.h"

namespace tavrel::test {
namespace {

// ---- Texts that make a careless parser slow -----------------------------------------------------

class SlowTexts : public testing::TestWithParam<bench::Family> {};

std::string NameOf(const testing::TestParamInfo<bench::Family>& family) {
  std::string name;
  for (const char c : family.param.name) {
    name += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
  }
  return name + "_" + std::to_string(family.index);
}

WorkCount WorkOfALoad(const std::string& text) {
  const TemporaryHome home;
  const ScopedVariable variable("HOME", home.path().c_str());
  home.WriteLibrary(text);
  const CapturedStderr log;
  return WorkOf([] {
    AgentInitializer();
    AgentFinalizer();
  });
}

TEST_P(SlowTexts, OfTwiceTheLengthTakeTwiceTheWorkToLoad) {
  constexpr std::size_t kSize = std::size_t{256} << 10;
  ExpectDoubled(WorkOfALoad(GetParam().OfSize(kSize)), WorkOfALoad(GetParam().OfSize(2 * kSize)),
                "loading " + GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Of, SlowTexts, testing::ValuesIn(bench::AllFamilies()), NameOf);

// ---- Ordinary libraries -------------------------------------------------------------------------

std::string LibraryOf(int songs) {
  std::string tracks;
  for (int id = 1; id <= songs; ++id) {
    const std::string number = std::to_string(100000 + id);
    tracks += Track(id, TextPair("Name", "Song &#38; Dance No. " + number) +
                            TextPair("Artist", "Artist " + number.substr(0, 4)) +
                            TextPair("Album", "Caf\u00e9 " + number.substr(0, 5)) +
                            IntegerPair("Total Time", 191000 + id) +
                            TextPair("Persistent ID", TrackId(static_cast<unsigned>(id))) +
                            TextPair("Location", "file:///Users/x/Music/A%20" + number + ".mp3"));
  }
  std::string playlists;
  for (int first = 1; first <= songs; first += 40) {
    playlists += Playlist(TextPair("Name", "List " + std::to_string(100000 + first)),
                          {first, first + 1, first + 2, first / 2, first / 3 + 1});
  }
  return LibraryText({tracks, playlists});
}

std::int32_t Count(PlaylistRecord*, std::int32_t, void*) {
  return 1;
}

void Search(const char* term) {
  SongInfo terms = {};
  terms.name = terms.artist = terms.album = const_cast<char*>(term);
  static_cast<void>(SearchSong(&terms, Count, nullptr));
}

void AskEverySong() {
  PlaylistRecord* all = OpenAllSongs();
  SongInfo info = {};
  for (std::int32_t i = 0; i < GetSongCount(all); ++i) GetSongInfo(all, i, &info);
}

struct LibraryWork {
  WorkCount life, firstInfo, laterInfo, firstSearch, laterSearch;
};

LibraryWork WorkOfALibrary(int songs) {
  const TemporaryHome home;
  const ScopedVariable variable("HOME", home.path().c_str());
  home.WriteLibrary(LibraryOf(songs));
  const CapturedStderr log;
  LibraryWork work;
  work.life = WorkOf([] {
    AgentInitializer();
    AgentFinalizer();
  });
  AgentInitializer();
  EXPECT_EQ(GetSongCount(OpenAllSongs()), songs);
  work.firstInfo = WorkOf(AskEverySong);
  work.laterInfo = WorkOf(AskEverySong);
  work.firstSearch = WorkOf([] { Search("caf\u00e9"); });
  work.laterSearch = WorkOf([] { Search("no such song"); });
  AgentFinalizer();
  return work;
}

TEST(Doubling, OfALibraryDoublesTheWorkOfEachCall) {
  constexpr int kSongs = 4000;
  const LibraryWork small = WorkOfALibrary(kSongs);
  const LibraryWork large = WorkOfALibrary(2 * kSongs);
  ExpectDoubled(small.life, large.life, "a load and its unload");
  ExpectDoubled(small.firstInfo, large.firstInfo, "every song's information, first time");
  ExpectDoubled(small.laterInfo, large.laterInfo, "every song's information, later");
  ExpectDoubled(small.firstSearch, large.firstSearch, "a first search");
  ExpectDoubled(small.laterSearch, large.laterSearch, "a later search");
}

// ---- Folders ------------------------------------------------------------------------------------

// Every song's cache file found and opened, the listing of the folder included.
WorkCount WorkOfArtwork(unsigned songs) {
  ArtworkHome home;
  std::vector<std::string> ids;
  for (unsigned i = 0; i < songs; ++i) ids.push_back(TrackId(i * 7919ULL));
  home.WriteLibrary(ids);
  for (unsigned i = 0; i < songs; ++i) {
    const std::string folder = std::to_string(i % 16) + "/" + std::to_string(i / 64) + "/";
    home.WriteCache(folder + CacheName(ids[i]) + ".itc2", CacheHeader() + Bytes({.image = "x"}));
  }
  home.Load();
  return WorkOf([songs] {
    for (unsigned i = 0; i < songs; ++i) {
      ArtworkHandle* handle = OpenArtwork(OpenAllSongs(), static_cast<std::int32_t>(i));
      EXPECT_EQ(GetArtworkCount(handle), 1);
      CloseArtwork(handle);
    }
  });
}

TEST(Doubling, OfTheArtworkFolderDoublesTheWorkOfFindingAllArtwork) {
  ExpectDoubled(WorkOfArtwork(1000), WorkOfArtwork(2000), "every song's artwork");
}

WorkCount WorkOfRingtones(int files) {
  const RingtoneScene scene;
  for (int i = 0; i < files; ++i) scene.Put("Tone " + std::to_string(10000 + i) + ".m4r");
  return WorkOf([] {
    AgentInitializer();
    AgentFinalizer();
  });
}

TEST(Doubling, OfTheRingtonesDoublesTheWorkOfListingThem) {
  ExpectDoubled(WorkOfRingtones(1500), WorkOfRingtones(3000), "a load with ringtones");
}

}  // namespace
}  // namespace tavrel::test
