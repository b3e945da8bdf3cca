// Finding a song's cache file, against what trying every name finds.
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "agent/Exports.h"
#include "agent/Lifecycle.h"
#include "library/artwork/ArtworkCatalogue.h"
#include "library/artwork/ArtworkIndex.h"
#include "library/file/PersistentId.h"
#include "tests/support/ArtworkHome.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"

namespace tavrel::test {
namespace {

// The steps as they are told: each candidate in turn, the first match wins.
const char* TryEveryName(const std::uint8_t* libraryId, const std::uint8_t* trackId) {
  for (int i = 0; i < g_pGlobal->artworkFileCount; ++i) {
    const std::string path = g_pGlobal->artworkFiles[i]->path;
    std::string name = path.substr(0, path.rfind('.'));
    name = name.substr(name.rfind('/') + 1);
    const std::size_t dash = name.find('-');
    if (dash == std::string::npos) continue;
    const std::string left = name.substr(0, dash);
    const std::string right = name.substr(dash + 1);
    if (left.size() != 16 || right.size() != 16) continue;
    std::uint8_t bytes[8];
    PersistentId2Buf(left.c_str(), bytes);
    if (!std::equal(bytes, bytes + 8, libraryId)) continue;
    PersistentId2Buf(right.c_str(), bytes);
    if (std::equal(bytes, bytes + 8, trackId)) return g_pGlobal->artworkFiles[i]->path;
  }
  return nullptr;
}

class ArtworkFinding : public testing::Test {
 protected:
  void SetUp() override {
    home_.WriteLibrary({});
    home_.Load();
  }
  // For every ID that random names can stand for, and some that none does.
  void CompareWithTheModel() const {
    for (unsigned number = 0; number < 0x120; ++number) {
      for (const char* library : {"00000000000000AB", "00000000000000CD", "0000000000000000"}) {
        ArtworkIds ids;
        PersistentId2Buf(library, ids.data());
        PersistentId2Buf(TrackId(number).c_str(), ids.data() + 8);
        ASSERT_EQ(FindArtworkFile(*CurrentLibrary(), ids), TryEveryName(ids.data(), ids.data() + 8))
            << library << " " << number;
      }
    }
  }

  ArtworkHome home_;
};

TEST_F(ArtworkFinding, AgreesWithTryingEveryName) {
  Random random(4711);
  const std::vector<std::string_view> heads = {"00000000000000AB-", "00000000000000ab-",
                                               "00000000000000CD-", "000000000000000-",
                                               "00000000000000ABC", "x0y0000000000000-"};
  const std::vector<std::string_view> tails = {"00000000000000", "0000000000000-", "0000000000000",
                                               "0000000000000x"};
  const std::vector<std::string_view> digits = {"0", "1", "a", "A", "f", "x"};
  for (int round = 0; round < Rounds(8); ++round) {
    for (int file = 0; file < 40; ++file) {
      const std::string name =
          random.Text(heads, 1) + random.Text(tails, 1) + random.Text(digits, 2);
      home_.WriteCache(std::to_string(random.Below(5)) + "/" + name + ".itc2", "");
    }
    CreateArtworkArray();  // appends: what was found stays first
    CompareWithTheModel();
  }
}

TEST_F(ArtworkFinding, WhatTheCatalogueGainsIsFound) {
  for (unsigned i = 0; i < 200; ++i) {
    ArtworkIds ids{};
    ids[14] = static_cast<std::uint8_t>(1 + i / 256);
    ids[15] = static_cast<std::uint8_t>(i);
    EXPECT_EQ(FindArtworkFile(*CurrentLibrary(), ids), nullptr);
    if (i % 50 != 0) continue;
    home_.WriteCache(CacheName(TrackId(256 + i), "0000000000000000") + ".itc", "");
    CreateArtworkArray();
    EXPECT_NE(FindArtworkFile(*CurrentLibrary(), ids), nullptr);
  }
}

// Each list of the folder is appended: these seven need no larger table than the first five.
TEST_F(ArtworkFinding, WhatTheTableHasRoomForIsFound) {
  const std::string zeros = "0000000000000000";
  for (unsigned i = 1; i <= 5; ++i) home_.WriteCache(CacheName(TrackId(i), zeros) + ".itc", "");
  CreateArtworkArray();
  CompareWithTheModel();
  std::filesystem::remove_all(home_.Artwork());
  for (unsigned i = 6; i <= 7; ++i) home_.WriteCache(CacheName(TrackId(i), zeros) + ".itc", "");
  CreateArtworkArray();
  EXPECT_EQ(g_pGlobal->artworkFileCount, 7);
  CompareWithTheModel();
}

}  // namespace
}  // namespace tavrel::test
