// Folders with more entries than anybody has: all of them are listed. A hundred thousand in scripts/soak.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/CacheFiles.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/Soak.h"
#include "tests/support/TemporaryHome.h"
#include "tests/support/WholeUse.h"

namespace tavrel::test {
namespace {

constexpr const char* kLibraryId = "0123456789ABCDEF";
constexpr const char* kSongId = "FEDCBA9876543210";

std::string Digits(int number) {
  const std::string digits = std::to_string(number);
  return std::string(16 - digits.size(), '0') + digits;
}

// A library of one song, with `count` ringtones and as many artwork files, its own among them.
void Fill(const TemporaryHome& home, int count) {
  home.WriteLibrary(LibraryText({Track(1, TextPair("Persistent ID", kSongId)), {}}));
  const std::string folder = home.path() + "/Music/iTunes/";
  std::filesystem::create_directories(folder + "Album Artwork/Cache");
  std::filesystem::create_directories(folder + "iTunes Media/Ringtones");
  const std::string cache = folder + "Album Artwork/Cache/" + kLibraryId + "-";
  for (int i = 0; i < count; ++i) {
    std::ofstream(folder + "iTunes Media/Ringtones/" + Digits(i) + ".m4r");
    std::ofstream(cache + (i == count / 2 ? kSongId : Digits(i)) + ".itc2", std::ios::binary)
        << CacheHeader() << Bytes({.image = "x"});
  }
}

}  // namespace

TEST(LargeFolders, AreListedWhole) {
  const int count = Soaked(400, 100000);
  const TemporaryHome home;
  Fill(home, count);
  const LoadedLibrary library(home.path());
  EXPECT_EQ(library->getSongCount(library->openPlaylist(0, 0)), count);
  ArtworkHandle* handle = OpenFirstArtwork(FunctionsOf(library));
  EXPECT_NE(handle, nullptr);
  EXPECT_EQ(library.Global()->artworkFileCount, count);
  library.Get<decltype(&CloseArtwork)>("CloseArtwork")(handle);
  PrintFigure(count, "entries of the ringtone folder and of the artwork folder");
}

}  // namespace tavrel::test
