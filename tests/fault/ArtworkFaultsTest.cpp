// Every allocation fails once, and from there on all of them: nothing crashes, nothing is lost,
// nothing stays open. AddressSanitizer sees the rest.
#include <algorithm>

#include "agent/Exports.h"
#include "system/Memory.h"
#include "tests/fault/FailingNew.h"
#include "tests/support/ArtworkHome.h"
#include "tests/support/CacheFiles.h"

namespace tavrel::test {
namespace {

namespace faults = system::faults;

// Runs `body` with the n-th allocation failing, for every n, until none fails any more.
template <class Body>
void FailEach(Body body) {
  for (const bool once : {true, false}) {
    std::int64_t n = 0;
    for (;; ++n) {
      const std::size_t open = OpenDescriptors();
      faults::FailAfter(n, once);
      {
        const InsideLibrary inside;
        body();
      }
      const bool reached = faults::Asked() > n;
      faults::Stop();
      EXPECT_EQ(OpenDescriptors(), open) << n;
      if (!reached) break;
      ASSERT_LT(n, 5000);
    }
    EXPECT_GT(n, 0);
  }
}

std::string ManyImages() {
  std::string file = CacheHeader();
  for (int i = 0; i < 40; ++i) file += Bytes({.image = Filler(3)});
  return file;
}

TEST(ArtworkFaults, OpeningAFile) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a.itc2", ManyImages());
  int most = 0;
  FailEach([&] {
    ArtworkHandle* handle = OpenArtworkFile(path.c_str());
    most = std::max(most, GetArtworkCount(handle));
    ArtworkInfo info{};
    GetArtworkInfo(handle, GetArtworkCount(handle) - 1, &info);
    CloseArtwork(handle);
  });
  EXPECT_EQ(most, 40);
}

TEST(ArtworkFaults, OpeningASongsArtwork) {
  ArtworkHome home;
  std::vector<std::string> tracks;
  for (unsigned i = 0; i < 40; ++i) tracks.push_back(TrackId(i));
  home.WriteLibrary(tracks);
  for (const std::string& track : tracks) {
    home.WriteCache(track.substr(15) + "/x/" + CacheName(track) + ".itc2", ManyImages());
  }
  bool found = false;
  for (const bool once : {true, false}) {
    for (std::int64_t n = 0;; ++n) {
      home.Load();
      const std::size_t open = OpenDescriptors();
      faults::FailAfter(n, once);
      for (int song = 0; song < 40; song += 13) {
        const InsideLibrary inside;
        ArtworkHandle* handle = OpenArtwork(OpenAllSongs(), song);
        found = handle != nullptr;
        CloseArtwork(handle);
      }
      const bool reached = faults::Asked() > n;
      faults::Stop();
      EXPECT_EQ(OpenDescriptors(), open);
      // Whatever is in the catalogue is whole, and found.
      for (const std::string& path : home.Catalogue()) EXPECT_TRUE(path.ends_with(".itc2"));
      if (!reached) break;
      ASSERT_LT(n, 5000);
    }
    EXPECT_TRUE(found);
  }
}

TEST(ArtworkFaults, WithoutMemoryForAnIndexEveryNameIsTried) {
  ArtworkHome home;
  home.WriteLibrary({TrackId(1), TrackId(2)});
  home.WriteCache(CacheName(TrackId(1)) + ".itc2", CacheHeader());
  home.WriteCache(CacheName(TrackId(2)) + ".itc2", CacheHeader());
  home.Load();
  PlaylistRecord* songs = OpenAllSongs();
  SongInfo info{};
  GetSongInfo(songs, 0, &info);
  GetSongInfo(songs, 1, &info);
  CreateArtworkArray();
  for (int song = 0; song < 2; ++song) {
    faults::FailAfter(0, true);  // the index, or its table
    ArtworkHandle* handle = OpenArtwork(songs, song);
    faults::Stop();
    EXPECT_NE(handle, nullptr);
    CloseArtwork(handle);
  }
}

}  // namespace
}  // namespace tavrel::test
