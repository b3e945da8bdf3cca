// Twice the songs, the files or the letters are at most twice the work of finding files.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "host/checks/Orphans.h"
#include "host/files/SongFiles.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/work/WorkCount.h"

namespace tavrel::test {
namespace {

using namespace tavrel::host;

constexpr int kSongsInTheTree = 1000;

// files: whether the songs have some, in folders of ten or all in one, spelled as the library spells them or not.
struct Tree {
  std::string what;
  bool isThere;
  bool isFlat;
  bool isRespelled;
};

std::string FileOf(const Tree& tree, int song, bool isOnDisk) {
  const std::string folder = tree.isFlat ? "All" : "Album " + std::to_string(10000 + song / 10);
  const char* const accent = tree.isRespelled && isOnDisk ? "e\u0301" : "%C3%A9";
  return folder + "/Caf" + accent + std::to_string(10000 + song) + ".mp3";
}

WorkCount WorkOfFinding(const Tree& tree, int songs) {
  const TemporaryFolder folder;
  for (int song = 0; tree.isThere && song < songs; ++song) {
    std::string file = FileOf(tree, song, true);
    if (!tree.isRespelled) file.replace(file.find("%C3%A9"), 6, "\u00E9");
    folder.Write("iTunes Media/Music/" + file, "");
  }
  return WorkOf([&] {
    SongFiles files({}, "file:///Users/me/iTunes%20Media/", folder.path());
    for (int song = 0; song < songs; ++song) {
      std::string url = "file:///Users/me/iTunes%20Media/Music/" + FileOf(tree, song, false);
      for (std::size_t at; (at = url.find(' ')) != std::string::npos;) url.replace(at, 1, "%20");
      EXPECT_EQ(files.Find(url, "File").path.empty(), !tree.isThere);
    }
  });
}

TEST(WorkOfTheHost, OnFindingFilesDoubles) {
  const std::vector<Tree> trees{{"files in folders", true, false, false},
                                {"files in one folder", true, true, false},
                                {"respelled files in folders", true, false, true},
                                {"respelled files in one folder", true, true, true},
                                {"missing files", false, false, false}};
  for (const Tree& tree : trees) {
    ExpectDoubled(WorkOfFinding(tree, kSongsInTheTree), WorkOfFinding(tree, 2 * kSongsInTheTree),
                  tree.what);
  }
}

// Names that are all alike, and none of which fits.
TEST(WorkOfTheHost, OnFilesThatAreAlikeDoubles) {
  const auto work = [](unsigned songs) {
    const TemporaryFolder folder;
    for (unsigned song = 0; song < songs; ++song) {
      std::string name = "aaaaaaaaaaaa";
      for (std::size_t bit = 0; bit < name.size(); ++bit) {
        if ((song >> bit & 1u) != 0) name[bit] = 'A';
      }
      std::filesystem::create_directories(folder.PathOf("x/" + name));
    }
    return WorkOf([&] {
      SongFiles files({}, "", std::nullopt);
      for (unsigned song = 0; song < songs; ++song) {
        const std::string name = song % 2 == 0 ? "AAAAAAAAAAAA" : "aaaaaaaaaaaa/x";
        EXPECT_TRUE(files.Find("file://" + folder.PathOf("X/" + name), "File").path.empty());
      }
    });
  };
  ExpectDoubled(work(500), work(1000), "files that are alike");
}

TEST(WorkOfTheHost, OnFilesOfNoSongDoubles) {
  const auto work = [](int files) {
    const TemporaryFolder folder;
    NamedFiles claimed;
    for (int file = 0; file < files; ++file) {
      const std::string number = std::to_string(10000 + file);
      const std::string path = folder.Write("x" + number.substr(0, 4) + "/" + number, "");
      if (file % 2 == 0) claimed.Add(path, true);
    }
    return WorkOf([&] {
      Folders folders;
      const std::set<std::string> tops{folder.path(), folder.PathOf("x1000")};
      EXPECT_EQ(FindOrphans(tops, claimed, folders).size(), static_cast<std::size_t>(files) / 2);
    });
  };
  ExpectLinear(work(1000), work(2000), 2, 1000);  // they are sorted
}

TEST(WorkOfTheHost, OnLongLocationsDoubles) {
  for (const std::string piece : {"x", "/x", "/..", "%CC%81", "%2F", "//", "/%CC%B4%CC%81"}) {
    const auto work = [&piece](int pieces) {
      std::string url = "file:///Users/me/Music/a";
      for (int i = 0; i < pieces; ++i) url += piece;
      SongFiles files({.maps = {"/Users/you=/x"}, .music = {}}, "file:///Users/me/Music/", "/tmp");
      return WorkOf([&] { EXPECT_TRUE(files.Find(url, "File").path.empty()); });
    };
    ExpectDoubled(work(300), work(600), "a location of " + piece);
    ExpectDoubled(work(20000), work(40000), "a long location of " + piece);
  }
}

}  // namespace
}  // namespace tavrel::test
