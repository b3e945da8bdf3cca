// What it costs to find the artwork of every song.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "agent/Exports.h"
#include "agent/Lifecycle.h"
#include "library/artwork/ArtworkCatalogue.h"
#include "library/artwork/ArtworkIndex.h"
#include "library/file/PersistentId.h"
#include "tests/support/ArtworkHome.h"
#include "tests/work/WorkCount.h"

namespace tavrel::test {
namespace {

// A catalogue of `count` files that are not there: finding looks at names only.
class ImaginaryCatalogue {
 public:
  explicit ImaginaryCatalogue(std::size_t count) {
    home_.WriteLibrary({});
    home_.Load();
    g_pGlobal->artworkFiles =
        static_cast<ArtworkFileEntry**>(std::calloc(count, sizeof(ArtworkFileEntry*)));
    for (std::size_t i = 0; i < count; ++i) {
      const std::string path = "/" + CacheName(TrackId(i * 7919)) + ".itc2";
      auto* entry = static_cast<ArtworkFileEntry*>(std::calloc(1, sizeof(ArtworkFileEntry)));
      entry->path = strdup(path.c_str());
      g_pGlobal->artworkFiles[i] = entry;
    }
    g_pGlobal->artworkFileCapacity = static_cast<std::int32_t>(count);
    g_pGlobal->artworkFileCount = static_cast<std::int32_t>(count);
  }

 private:
  ArtworkHome home_;
};

// The work of finding each of `count` files, the index included.
WorkCount WorkOfFinding(std::size_t count) {
  const ImaginaryCatalogue catalogue(count);
  return WorkOf([count] {
    ArtworkIds ids;
    PersistentId2Buf(std::string(kLibraryId).c_str(), ids.data());
    for (std::size_t i = 0; i < count; ++i) {
      PersistentId2Buf(TrackId(i * 7919).c_str(), ids.data() + 8);
      EXPECT_EQ(FindArtworkFile(*CurrentLibrary(), ids), g_pGlobal->artworkFiles[i]->path);
    }
  });
}

TEST(ArtworkFindingCost, IsLinearInTheNumberOfSongsAndFiles) {
  ExpectLinear(WorkOfFinding(2000), WorkOfFinding(16000), 8, 2000);
}

}  // namespace
}  // namespace tavrel::test
