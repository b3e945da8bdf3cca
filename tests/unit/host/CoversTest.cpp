// Which cache files are opened for covers, and how often.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>

#include "host/artwork/Covers.h"
#include "tests/support/TemporaryFolder.h"

namespace tavrel::host {
namespace {

using test::TemporaryFolder;

// What a stand-in for the library is asked for. All of its files hold one image, which is no picture.
std::int32_t librarySongs = 0;
int opened = 0;
int described = 0;
char anything = 0;

ArtworkHandle* OpenAny(PlaylistRecord*, std::int32_t) noexcept {
  ++opened;
  return reinterpret_cast<ArtworkHandle*>(&anything);
}

// Into a buffer of that size, if any.
std::int32_t GiveId(const char* id, char* buffer) noexcept {
  if (buffer != nullptr) std::memcpy(buffer, id, 17);
  return 17;
}

LibraryFunctions StandIn() {
  LibraryFunctions functions{};
  functions.getSongCount = [](const PlaylistRecord*) noexcept { return librarySongs; };
  functions.getLibraryProperty = [](const char*, char* buffer, std::int32_t) noexcept {
    return GiveId("00000000000000AA", buffer);
  };
  functions.getSongProperty = [](const PlaylistRecord*, std::int32_t, const char*, char* buffer,
                                 std::int32_t) noexcept {
    return GiveId("00000000000000BB", buffer);
  };
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

// A library whose librarySongs all have the ID of one cache file.
class SharedFile : public testing::Test {
 protected:
  SharedFile() {
    librarySongs = 50;
    opened = described = 0;
  }

  TemporaryFolder folder_;
  std::string library_ = folder_.path() + "/Library.xml";
  LibraryFunctions functions_ = StandIn();
};

TEST_F(SharedFile, OneWithoutAPictureIsReadOnceForAllItsSongs) {
  const std::string file =
      folder_.Write("Album Artwork/00000000000000AA-00000000000000BB.itc2", "");
  const CacheFolder cache(functions_, library_);
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
  const CacheFolder cache(functions_, library_);
  EXPECT_TRUE(cache.IsEmpty());
  Covers covers(functions_, cache);
  for (std::int32_t song = 0; song < 50; ++song) EXPECT_FALSE(covers.Of(song).has_value());
  EXPECT_EQ(opened, 0);
  EXPECT_TRUE(covers.Damaged().empty());
}

TEST_F(SharedFile, ASongIsAskedForThoughOnlyFilesOfOthersAreThere) {
  folder_.Write("Album Artwork/other.itc2", "");
  const CacheFolder cache(functions_, library_);
  EXPECT_FALSE(cache.IsEmpty());
  Covers covers(functions_, cache);
  EXPECT_FALSE(covers.Of(0).has_value());
  EXPECT_EQ(opened, 1) << "the library knows best which file is a song's";
}

}  // namespace
}  // namespace tavrel::host
