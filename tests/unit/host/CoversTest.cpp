// Which cache files are opened for covers, and how often.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "host/artwork/Covers.h"
#include "tests/support/TemporaryFolder.h"

namespace tavrel::host {
namespace {

using test::TemporaryFolder;

// What a stand-in for the library is asked for. All of its files hold one image, which is no picture.
int opened = 0;
int described = 0;
char anything = 0;

ArtworkHandle* OpenAny(PlaylistRecord*, std::int32_t) noexcept {
  ++opened;
  return reinterpret_cast<ArtworkHandle*>(&anything);
}

LibraryFunctions StandIn() {
  LibraryFunctions functions{};
  functions.openAllSongs = []() noexcept { return reinterpret_cast<PlaylistRecord*>(&anything); };
  functions.openArtworkAny = OpenAny;
  functions.closeArtwork = [](ArtworkHandle*) noexcept {};
  functions.getArtworkCount = [](const ArtworkHandle* handle) noexcept {
    return handle == nullptr ? 0 : 1;
  };
  functions.getArtworkInfo = [](ArtworkHandle*, std::int32_t, ArtworkInfo* info) noexcept {
    ++described;
    *info = {0, 1, 1, info->data, 4};
    if (info->data != nullptr) info->data[3] = 'x';
    return 1;
  };
  return functions;
}

// A library file whose `count` tracks all have the ID of one cache file.
class SharedFile : public testing::Test {
 protected:
  explicit SharedFile(int count = 50) {
    std::string text = "<key>Library Persistent ID</key><string>00000000000000AA</string>";
    for (int i = 0; i < count; ++i) {
      text +=
          "<key>Track ID</key><integer>1</integer>"
          "<key>Persistent ID</key><string>00000000000000BB</string>";
    }
    library_ = folder_.Write("Library.xml", text);
    opened = described = 0;
  }

  TemporaryFolder folder_;
  std::string library_;
  LibraryFunctions functions_ = StandIn();
};

TEST_F(SharedFile, OneWithoutAPictureIsReadOnceForAllItsSongs) {
  const std::string file =
      folder_.Write("Album Artwork/00000000000000AA-00000000000000BB.itc2", "");
  const CacheFolder cache(library_);
  Covers covers(functions_, cache);
  EXPECT_EQ(covers.Of(0), std::nullopt);
  const int first = described;
  EXPECT_GT(first, 0);
  for (std::int32_t song = 0; song < 50; ++song) {
    EXPECT_FALSE(covers.Of(song).has_value());
    EXPECT_FALSE(covers.Open(song).IsOpen());
  }
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(described, first);
  EXPECT_EQ(covers.Damaged(), std::set<std::string>{file});
}

TEST_F(SharedFile, NoneIsAskedForWhileTheCacheHoldsNone) {
  folder_.Write("Album Artwork/notes.txt", "");
  const CacheFolder cache(library_);
  EXPECT_TRUE(cache.IsEmpty());
  Covers covers(functions_, cache);
  for (std::int32_t song = 0; song < 50; ++song) EXPECT_FALSE(covers.Of(song).has_value());
  EXPECT_EQ(opened, 0);
  EXPECT_TRUE(covers.Damaged().empty());
}

TEST_F(SharedFile, ASongIsAskedForThoughOnlyFilesOfOthersAreThere) {
  folder_.Write("Album Artwork/other.itc2", "");
  const CacheFolder cache(library_);
  EXPECT_FALSE(cache.IsEmpty());
  Covers covers(functions_, cache);
  EXPECT_FALSE(covers.Of(0).has_value());
  EXPECT_EQ(opened, 1) << "the library knows best which file is a song's";
}

}  // namespace
}  // namespace tavrel::host
