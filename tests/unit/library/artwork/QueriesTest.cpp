#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

#include "agent/Exports.h"
#include "library/artwork/ArtworkHandle.h"
#include "library/playlists/PlaylistTable.h"
#include "tests/support/ArtworkHome.h"
#include "tests/support/CacheFiles.h"
#include "tests/support/RecordSizes.h"

namespace tavrel::test {
namespace {

constexpr std::string_view kTrack = "8899AABBCCDDEEFF";

class OpenArtworkOf : public testing::Test {
 protected:
  ~OpenArtworkOf() override { CloseArtwork(handle_); }

  void Load(const std::vector<std::string>& tracks = {std::string(kTrack)},
            std::string_view libraryId = kLibraryId) {
    home_.WriteLibrary(tracks, libraryId);
    home_.Load();
  }
  // A file whose one image is `width` pixels wide.
  void Cache(const std::string& name, std::uint32_t width) const {
    home_.WriteCache(name, CacheHeader() + Bytes({.image = Filler(1000), .width = width}));
  }
  // The width of what is opened for a song; 0 when nothing is.
  int Width(int index = 0) {
    CloseArtwork(handle_);
    handle_ = OpenArtwork(OpenAllSongs(), index);
    return handle_ == nullptr ? 0 : handle_->images[0]->width;
  }

  ArtworkHome home_;
  ArtworkHandle* handle_ = nullptr;
};

TEST_F(OpenArtworkOf, FindsTheFileOfTheLibrarysAndTheTracksId) {
  Cache("Cache/00/11/" + CacheName(kTrack) + ".itc2", 7);
  Load({"1111111111111111", std::string(kTrack), ""});
  EXPECT_EQ(Width(0), 0);
  EXPECT_EQ(Width(1), 7);
  EXPECT_EQ(Width(2), 0);
}

TEST_F(OpenArtworkOf, PropertiesOfTheTrackAreLoadedOnTheWay) {
  Cache(CacheName(kTrack) + ".itc2", 7);
  Load();
  const TrackRecord& track = *g_pGlobal->tracks[0];
  ASSERT_NE(track.pendingDict, nullptr);
  EXPECT_EQ(Width(), 7);
  EXPECT_EQ(track.pendingDict, nullptr);
  EXPECT_STREQ(track.info.name, "Song");
  EXPECT_EQ(Width(), 7);
}

TEST_F(OpenArtworkOf, UpperAndLowerCaseDigitsAreTheSame) {
  Cache("0a1b2c3d4e5f6071-8899aabbccddeeff.itc2", 7);
  Load();
  EXPECT_EQ(Width(), 7);
}

TEST_F(OpenArtworkOf, ItcFilesAreTriedInTheSameWay) {
  Cache(CacheName(kTrack) + ".itc", 7);
  Load();
  EXPECT_EQ(Width(), 7);
}

TEST_F(OpenArtworkOf, BothPartsOfTheNameHaveExactly16Characters) {
  for (const char* name :
       {"0A1B2C3D4E5F6071-8899AABBCCDDEEFF-x", "0A1B2C3D4E5F607100-8899AABBCCDDEEFF",
        "0A1B2C3D4E5F60718899AABBCCDDEEFF", "0A1B2C3D4E5F607-18899AABBCCDDEEFF",
        "0A1B2C3D4E5F6071-8899AABBCCDDEEF", "0A1B2C3D4E5F6071-8899AABBCCDDEEFF0", "-", ""}) {
    Cache(std::string(name) + ".itc2", 3);
  }
  Load();
  EXPECT_EQ(Width(), 0);
  home_.Unload();
  Cache("x/0A1B2C3D4E5F6071-8899AABBCCDDEEFF.itc", 7);
  Load();
  EXPECT_EQ(Width(), 7);
}

TEST_F(OpenArtworkOf, FileOfAnotherLibraryIsNotTaken) {
  Cache(CacheName(kTrack, "0A1B2C3D4E5F6070") + ".itc2", 3);
  Load();
  EXPECT_EQ(Width(), 0);
}

TEST_F(OpenArtworkOf, FirstFileInPathOrderWins) {
  Cache("b/" + CacheName(kTrack) + ".itc", 3);
  Cache("a/" + CacheName(kTrack) + ".itc2", 7);
  Cache("a/z/0a1b2c3d4e5f6071-8899aabbccddeeff.itc2", 4);
  Load();
  EXPECT_EQ(Width(), 7);
}

TEST_F(OpenArtworkOf, FirstFileStaysTheOneAlsoWhenItCannotBeOpened) {
  std::filesystem::create_directories(home_.Artwork() + "/a/" + CacheName(kTrack) + ".itc2");
  Cache("b/" + CacheName(kTrack) + ".itc2", 7);
  Load();
  EXPECT_EQ(Width(), 0);
}

TEST_F(OpenArtworkOf, DigitsBehindAnOddPairsLetterDoNotCount) {
  // Each pair counts for its leading digits: "7x" is 7, as "07" is.
  Cache("0A1B2C3D4E5F6071-7x00000000000000.itc2", 7);
  Load({"0700000000000000"});
  EXPECT_EQ(Width(), 7);
}

TEST_F(OpenArtworkOf, TrackWithoutAnIdHasZerosInItsPlace) {
  Cache("0000000000000000-0000000000000000.itc2", 7);
  Load({""}, "");
  EXPECT_EQ(Width(), 7);
}

TEST_F(OpenArtworkOf, BadPositionsGiveNull) {
  Cache(CacheName(kTrack) + ".itc2", 7);
  Load();
  PlaylistRecord* songs = OpenAllSongs();
  EXPECT_EQ(OpenArtwork(nullptr, 0), nullptr);
  for (const int index : {-1, 1, 0x7FFFFFFF, -0x7FFFFFFF - 1}) {
    EXPECT_EQ(OpenArtwork(songs, index), nullptr) << index;
    EXPECT_EQ(OpenArtworkAny(songs, index), nullptr) << index;
  }
}

TEST_F(OpenArtworkOf, EachCallOpensTheFileAnew) {
  Cache(CacheName(kTrack) + ".itc2", 7);
  Load();
  ArtworkHandle* first = OpenArtwork(OpenAllSongs(), 0);
  ArtworkHandle* second = OpenArtwork(OpenAllSongs(), 0);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(ArtworkDescriptor(*first), ArtworkDescriptor(*second));
  CloseArtwork(first);
  std::uint8_t bytes[1000];
  ArtworkInfo info{.format = 0, .width = 0, .height = 0, .data = bytes, .dataSize = 1000};
  EXPECT_EQ(GetArtworkInfo(second, 0, &info), 1000 + tavrel::test::kArtworkInfoSize);
  EXPECT_EQ(std::memcmp(bytes, Filler(1000).data(), 1000), 0);
  CloseArtwork(second);
}

TEST_F(OpenArtworkOf, AnyReadsWhatOpenArtworkDoesNot) {
  home_.WriteCache(CacheName(kTrack) + ".itc2",
                   CacheHeader() + Bytes({.image = LikeJpeg(100), .imageStart = 196}) +
                       Bytes({.image = Filler(50)}));
  Load();
  ArtworkHandle* usual = OpenArtwork(OpenAllSongs(), 0);
  ArtworkHandle* any = OpenArtworkAny(OpenAllSongs(), 0);
  EXPECT_EQ(GetArtworkCount(usual), 1);
  EXPECT_EQ(GetArtworkCount(any), 2);
  CloseArtwork(usual);
  CloseArtwork(any);
}

TEST_F(OpenArtworkOf, HandleOutlivesTheLoad) {
  Cache(CacheName(kTrack) + ".itc2", 7);
  Load();
  EXPECT_EQ(Width(), 7);
  home_.Unload();
  ArtworkInfo info{};
  EXPECT_EQ(GetArtworkInfo(handle_, 0, &info), 1000 + tavrel::test::kArtworkInfoSize);
}

class ArtworkInfoOf : public OpenArtworkOf {
 protected:
  void SetUp() override {
    Cache(CacheName(kTrack) + ".itc2", 600);
    Load();
    ASSERT_EQ(Width(), 600);
  }
};

TEST_F(ArtworkInfoOf, TooSmallARoomGetsTheSizeOnly) {
  for (const int room : {0, 999, -1}) {
    ArtworkInfo info{.format = 5, .width = 6, .height = 7, .data = nullptr, .dataSize = room};
    EXPECT_EQ(GetArtworkInfo(handle_, 0, &info), 1000 + tavrel::test::kArtworkInfoSize);
    EXPECT_EQ(info.dataSize, 1000);
    EXPECT_EQ(info.format, 5);
    EXPECT_EQ(info.width, 6);
    EXPECT_EQ(info.height, 7);
  }
}

TEST_F(ArtworkInfoOf, EnoughRoomGetsEverything) {
  for (const int room : {1000, 5000}) {
    std::string buffer(5000, '?');
    ArtworkInfo info{};
    info.format = 5;
    info.data = reinterpret_cast<std::uint8_t*>(buffer.data());
    info.dataSize = room;
    EXPECT_EQ(GetArtworkInfo(handle_, 0, &info), 1000 + tavrel::test::kArtworkInfoSize);
    EXPECT_EQ(info.dataSize, 1000);
    EXPECT_EQ(info.format, 0);
    EXPECT_EQ(info.width, 600);
    EXPECT_EQ(info.height, 600);
    EXPECT_EQ(buffer, Filler(1000) + std::string(4000, '?'));
  }
}

TEST_F(ArtworkInfoOf, BadPositionTouchesNothing) {
  EXPECT_EQ(GetArtworkCount(handle_), 1);
  for (const int index : {1, 2, -1, 0x7FFFFFFF}) {
    ArtworkInfo info{.format = 5, .width = 6, .height = 7, .data = nullptr, .dataSize = 5000};
    EXPECT_EQ(GetArtworkInfo(handle_, index, &info), 0);
    EXPECT_EQ(info.dataSize, 5000);
    EXPECT_EQ(info.format, 5);
  }
}

TEST_F(ArtworkInfoOf, NullArgumentsAnswerNothing) {
  ArtworkInfo info{};
  EXPECT_EQ(GetArtworkInfo(nullptr, 0, &info), 0);
  EXPECT_EQ(GetArtworkInfo(handle_, 0, nullptr), 0);
  EXPECT_EQ(GetArtworkCount(nullptr), 0);
  CloseArtwork(nullptr);
  CloseArtworkImp(nullptr);
}

TEST_F(ArtworkInfoOf, NullDataGetsTheNumbersAndNoBytes) {
  ArtworkInfo info{.format = 5, .width = 6, .height = 7, .data = nullptr, .dataSize = 1000};
  EXPECT_EQ(GetArtworkInfo(handle_, 0, &info), 1000 + tavrel::test::kArtworkInfoSize);
  EXPECT_EQ(info.format, 0);
  EXPECT_EQ(info.width, 600);
}

TEST_F(ArtworkInfoOf, FileCutShortDeliversWhatItHolds) {
  const std::string path = home_.Artwork() + "/" + CacheName(kTrack) + ".itc2";
  ASSERT_EQ(truncate(path.c_str(), 284 + 208 + 400), 0);
  std::string buffer(1000, '?');
  ArtworkInfo info{};
  info.data = reinterpret_cast<std::uint8_t*>(buffer.data());
  info.dataSize = 1000;
  EXPECT_EQ(GetArtworkInfo(handle_, 0, &info), 1000 + tavrel::test::kArtworkInfoSize);
  EXPECT_EQ(info.dataSize, 1000);
  EXPECT_EQ(buffer, Filler(400) + std::string(600, '?'));
}

TEST_F(ArtworkInfoOf, ReadingDependsOnNoPositionOfTheFile) {
  const off_t before = lseek(ArtworkDescriptor(*handle_), 0, SEEK_CUR);
  const pid_t child = fork();
  std::string buffer(1000, '?');
  ArtworkInfo info{};
  info.data = reinterpret_cast<std::uint8_t*>(buffer.data());
  info.dataSize = 1000;
  GetArtworkInfo(handle_, 0, &info);
  const bool same = buffer == Filler(1000);
  if (child == 0) _exit(same ? 0 : 1);
  int state = -1;
  waitpid(child, &state, 0);
  EXPECT_EQ(state, 0);
  EXPECT_TRUE(same);
  EXPECT_EQ(lseek(ArtworkDescriptor(*handle_), 0, SEEK_CUR), before);
}

}  // namespace
}  // namespace tavrel::test
