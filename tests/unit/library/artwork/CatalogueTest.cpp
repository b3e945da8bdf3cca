#include <sys/stat.h>
#include <unistd.h>

#include "agent/Exports.h"
#include "library/artwork/ArtworkCatalogue.h"
#include "tests/support/ArtworkHome.h"
#include "tests/support/CacheFiles.h"

namespace tavrel::test {
namespace {

using Paths = std::vector<std::string>;

class ArtworkCatalogue : public testing::Test {
 protected:
  void SetUp() override {
    home_.WriteLibrary({TrackId(1)});
    home_.Load();
  }

  ArtworkHome home_;
};

TEST_F(ArtworkCatalogue, IsEmptyUntilArtworkIsAskedFor) {
  home_.WriteCache("a.itc2", "");
  EXPECT_EQ(g_pGlobal->artworkFileCount, 0);
  EXPECT_EQ(g_pGlobal->artworkFiles, nullptr);
  EXPECT_EQ(OpenArtwork(nullptr, 0), nullptr);  // the walk comes before the arguments
  EXPECT_EQ(home_.Catalogue(), Paths{"a.itc2"});
  EXPECT_EQ(g_pGlobal->artworkFileCapacity, 32);
}

TEST_F(ArtworkCatalogue, ExtensionIsComparedExactly) {
  for (const char* name : {"a.itc", "b.itc2", "c.ITC2", "d.ITC", "e.itc3", "f.itc2.bak", "itc2",
                           "itc", "g.x.itc2", ".itc2", "h.itc2x", "i.", "folder.itc2/inside"}) {
    home_.WriteCache(name, "");
  }
  EXPECT_EQ(CreateArtworkArray(), 0);
  EXPECT_EQ(home_.Catalogue(), (Paths{".itc2", "a.itc", "b.itc2", "folder.itc2", "g.x.itc2"}));
}

TEST_F(ArtworkCatalogue, HoldsEveryDepthInPathOrder) {
  home_.WriteCache("Cache/X/01/15/03/b.itc2", "");
  home_.WriteCache("Cache/X/01/04/15/c.itc2", "");
  home_.WriteCache("Download/a.itc", "");
  CreateArtworkArray();
  EXPECT_EQ(home_.Catalogue(),
            (Paths{"Cache/X/01/04/15/c.itc2", "Cache/X/01/15/03/b.itc2", "Download/a.itc"}));
}

TEST_F(ArtworkCatalogue, EmptyOneIsWalkedAtEveryCallAndAFilledOneNeverAgain) {
  PlaylistRecord* songs = OpenAllSongs();
  EXPECT_EQ(OpenArtwork(songs, 0), nullptr);
  home_.WriteCache("first.itc2", "");
  EXPECT_EQ(OpenArtworkAny(songs, -1), nullptr);
  EXPECT_EQ(home_.Catalogue(), Paths{"first.itc2"});
  home_.WriteCache(CacheName(TrackId(1)) + ".itc2", CacheHeader());
  EXPECT_EQ(OpenArtwork(songs, 0), nullptr);
  EXPECT_EQ(home_.Catalogue(), Paths{"first.itc2"});
}

TEST_F(ArtworkCatalogue, MissingFolderIsAnEmptyCatalogue) {
  EXPECT_EQ(OpenArtwork(OpenAllSongs(), 0), nullptr);
  EXPECT_EQ(CreateArtworkArray(), 0);
  EXPECT_EQ(home_.Catalogue(), Paths{});
  EXPECT_EQ(DestroyArtworkArray(), 0);
}

TEST_F(ArtworkCatalogue, BelongsToTheHomeOfTheLoad) {
  home_.WriteCache("a.itc2", "");
  const TemporaryFolder other;
  ASSERT_EQ(setenv("HOME", other.path().c_str(), 1), 0);
  CreateArtworkArray();
  EXPECT_EQ(home_.Catalogue(), Paths{"a.itc2"});
}

TEST_F(ArtworkCatalogue, GrowsInStepsOf32AndByEveryCall) {
  for (int i = 0; i < 33; ++i) home_.WriteCache(std::to_string(i) + ".itc", "");
  CreateArtworkArray();
  EXPECT_EQ(g_pGlobal->artworkFileCount, 33);
  EXPECT_EQ(g_pGlobal->artworkFileCapacity, 64);
  CreateArtworkArray();
  EXPECT_EQ(g_pGlobal->artworkFileCount, 66);
  EXPECT_EQ(g_pGlobal->artworkFileCapacity, 96);
}

TEST_F(ArtworkCatalogue, ArtworkFolderMayBeALinkAndLinksBelowAreNotFollowed) {
  home_.folder().Write("elsewhere/a.itc2", "");
  home_.folder().Write("third/b.itc2", "");
  ASSERT_EQ(symlink(home_.folder().PathOf("third").c_str(),
                    home_.folder().PathOf("elsewhere/link").c_str()),
            0);
  ASSERT_EQ(symlink(home_.folder().PathOf("elsewhere").c_str(), home_.Artwork().c_str()), 0);
  CreateArtworkArray();
  EXPECT_EQ(home_.Catalogue(), Paths{"a.itc2"});
}

TEST_F(ArtworkCatalogue, DestroyedTwiceOrBuiltAnewIsSafe) {
  const std::string path = home_.WriteCache(CacheName(TrackId(1)) + ".itc2", CacheHeader());
  PlaylistRecord* songs = OpenAllSongs();
  CloseArtwork(OpenArtwork(songs, 0));
  EXPECT_EQ(DestroyArtworkArray(), 0);
  EXPECT_EQ(g_pGlobal->artworkFileCount, 1);  // the fields keep their values
  EXPECT_EQ(DestroyArtworkArray(), 0);
  EXPECT_EQ(OpenArtwork(songs, 0), nullptr);
  EXPECT_EQ(CreateArtworkArray(), 0);
  EXPECT_EQ(g_pGlobal->artworkFileCount, 1);
  ArtworkHandle* handle = OpenArtwork(songs, 0);
  EXPECT_NE(handle, nullptr);
  CloseArtwork(handle);
}

TEST(ArtworkWithoutALoad, NothingIsFoundAndNothingFails) {
  g_pGlobal = nullptr;  // as before the first load
  EXPECT_EQ(OpenArtwork(nullptr, 0), nullptr);
  EXPECT_EQ(OpenArtworkAny(nullptr, 0), nullptr);
  EXPECT_EQ(CreateArtworkArray(), 0);
  EXPECT_EQ(DestroyArtworkArray(), 0);
}

TEST(ArtworkWithoutALibrary, CatalogueIsBuiltAllTheSame) {
  ArtworkHome home;
  home.WriteCache("a.itc2", "");
  home.Load();
  EXPECT_EQ(g_pGlobal->document, nullptr);
  EXPECT_EQ(OpenArtwork(nullptr, 0), nullptr);
  EXPECT_EQ(home.Catalogue(), Paths{"a.itc2"});
}

TEST(ArtworkCatalogueAlone, WithoutAHomeFolderNothingIsListed) {
  LibraryState state = {};
  CreateArtworkCatalogue(state);
  EXPECT_EQ(state.artworkFileCount, 0);
  EXPECT_EQ(state.artworkFiles, nullptr);
}

}  // namespace
}  // namespace tavrel::test
