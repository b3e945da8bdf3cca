// Where the files of songs are found, and where not.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/files/SongFiles.h"
#include "host/output/Failure.h"
#include "tests/support/TemporaryFolder.h"

namespace tavrel::test {
namespace {

using namespace tavrel::host;

// Accents composed with their letters, and apart.
constexpr const char* kComposed = "Caf\u00E9";
constexpr const char* kApart = "Cafe\u0301";

class Locations : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return folder_.PathOf(name); }
  std::string Put(const std::string& name) const { return folder_.Write(name, "x"); }

  // "found /path", "missing", ... of a library file in this folder.
  std::string Find(const std::string& location) {
    SongFiles files(options_, musicFolder_, libraryFolder_);
    const SongFile file = files.Find(location, "File");
    std::string told(file.status ? StatusName(*file.status) : "unknown");
    if (!file.path.empty()) told.append(" ").append(file.path);
    sought_ = file.sought;
    found_ = file.musicFolder;
    return told;
  }

  TemporaryFolder folder_;
  PathOptions options_;
  std::string musicFolder_ = "file:///Users/me/Music/iTunes/iTunes%20Media/";
  std::optional<std::string> libraryFolder_ = folder_.path();
  std::string sought_;
  std::string found_;
};

// ---- Where --------------------------------------------------------------------------------------

TEST_F(Locations, AreTriedAsTheyAreWritten) {
  const std::string path = Put("a/A B+C%41.mp3");
  EXPECT_EQ(Find("file://" + Path("a/A%20B+C%2541.mp3")), "found " + path);
  EXPECT_EQ(Find("file://LOCALHOST" + Path("a/A%20B+C%2541.mp3")), "found " + path);
  EXPECT_EQ(Find("FILE:" + Path("a/A%20B+C%2541.mp3")), "found " + path);
  EXPECT_EQ(Find("file://" + Path("a/A%20B%20C%2541.mp3")), "missing") << "a plus is no blank";
  EXPECT_EQ(Find("file://" + Path("a/A%20B+CA.mp3")), "missing");
  EXPECT_EQ(sought_, Path("a/A B+CA.mp3"));
}

TEST_F(Locations, BelowTheMusicFolderAreLookedForBesideTheLibraryFile) {
  const std::string location = "file:///Users/me/Music/iTunes/iTunes%20Media/Music/A/B/1.mp3";
  EXPECT_EQ(Find(location), "missing");
  EXPECT_EQ(sought_, "/Users/me/Music/iTunes/iTunes Media/Music/A/B/1.mp3");
  const std::string last = Put("Music/Music/A/B/1.mp3");
  EXPECT_EQ(Find(location), "found " + last);
  EXPECT_EQ(found_, Path("Music"));
  const std::string old = Put("iTunes Music/Music/A/B/1.mp3");
  EXPECT_EQ(Find(location), "found " + old);
  const std::string now = Put("iTunes Media/Music/A/B/1.mp3");
  EXPECT_EQ(Find(location), "found " + now);
  EXPECT_EQ(Find(location + "x"), "missing");
  EXPECT_EQ(sought_, now + "x");
  libraryFolder_.reset();
  EXPECT_EQ(Find(location), "missing");
}

TEST_F(Locations, AreLookedForInAFolderThatIsCalledAsTheMusicFolder) {
  musicFolder_ = "file://localhost/D:/Tunes/";
  const std::string path = Put("Tunes/A/B/1.mp3");
  EXPECT_EQ(Find("file://localhost/D:/Tunes/A/B/1.mp3"), "found " + path);
  EXPECT_EQ(Find("file://localhost/d:/Tunes/A/B/1.mp3"), "found " + path);
  EXPECT_EQ(Find("file://localhost/D:/Tunes2/A/B/1.mp3"), "missing");
}

TEST_F(Locations, NextToTheMusicFolderAreLookedForBesideTheLibraryFile) {
  const std::string path = Put("Old/A/1.mp3");
  EXPECT_EQ(Find("file:///Users/me/Music/iTunes/Old/A/1.mp3"), "found " + path);
  EXPECT_EQ(found_, "");
}

TEST_F(Locations, AreLookedForBelowTheFolderOfTheUser) {
  const std::string location = "file:///Users/me/Music/iTunes/iTunes%20Media/Music/A/B/1.mp3";
  options_.music = Path("disk");
  const std::string shortest = Put("disk/A/B/1.mp3");
  EXPECT_EQ(Find(location), "found " + shortest) << "the folder \"Music\" within that of all media";
  const std::string below = Put("disk/iTunes Media/Music/A/B/1.mp3");
  EXPECT_EQ(Find(location), "found " + below);
  const std::string direct = Put("disk/Music/A/B/1.mp3");
  EXPECT_EQ(Find(location), "found " + direct);
  EXPECT_EQ(Find("file:///Volumes/old/A/B/1.mp3"), "found " + shortest) << "by three names";
  EXPECT_EQ(Find("file:///Volumes/old/A/1.mp3"), "missing");
  EXPECT_EQ(Find(location + "x"), "missing");
  EXPECT_EQ(sought_, direct + "x");
}

TEST_F(Locations, OfAFolderOfTheUserThatIsMissingAreAFailure) {
  options_.music = Path("none");
  EXPECT_THROW(Find("file:///x"), Failure);
}

// ---- Mappings -----------------------------------------------------------------------------------

TEST_F(Locations, AreMappedAtTheBoundariesOfFolders) {
  const std::string path = Put("new/A/1.mp3");
  options_.maps = {"/Volumes/Ext=" + Path("new") + "/"};
  EXPECT_EQ(Find("file:///Volumes/Ext/A/1.mp3"), "found " + path);
  EXPECT_EQ(Find("file:///Volumes/Ext2/A/1.mp3"), "missing");
  EXPECT_EQ(Find("file:///Volumes/Ext/B/1.mp3"), "missing");
  EXPECT_EQ(sought_, Path("new/B/1.mp3"));
  options_.maps = {"/=" + Path("new")};
  EXPECT_EQ(Find("file:///A/1.mp3"), "found " + path);
}

TEST_F(Locations, AreMappedByTheLongestOldFolder) {
  const std::string path = Put("new/1.mp3");
  options_.maps = {"/a=/none", "/a/b=" + Path("new"), "/a=/none either"};
  EXPECT_EQ(Find("file:///a/b/1.mp3"), "found " + path);
  EXPECT_EQ(Find("file:///a/1.mp3"), "missing");
  EXPECT_EQ(sought_, "/none/1.mp3") << "of two equal ones the first";
}

TEST_F(Locations, OfOtherSystemsAreMappedInEveryForm) {
  const std::string path = Put("new/1.mp3");
  const std::string drive = "file://localhost/C:/My%20Music/1.mp3";
  for (const std::string old : {"C:\\My Music", "c:/My Music/", "/c:/My Music",
                                "file://localhost/c:/My%20Music", "file:///C:/My%20Music/"}) {
    options_.maps = {old + "=" + Path("new")};
    EXPECT_EQ(Find(drive), "found " + path) << old;
  }
  for (const std::string old :
       {"\\\\NAS\\music", "//nas/music", "file://nas/music", "file://localhost//nas/music/"}) {
    options_.maps = {old + "=" + Path("new")};
    EXPECT_EQ(Find("file://nas/music/1.mp3"), "found " + path) << old;
    EXPECT_EQ(Find("file://localhost//Nas/music/1.mp3"), "found " + path) << old;
  }
  options_.maps = {std::string("/") + kComposed + "=" + Path("new")};
  EXPECT_EQ(Find("file:///Cafe%CC%81/1.mp3"), "found " + path) << "however accents are composed";
  options_.maps = {"c:\\my music=" + Path("new")};
  EXPECT_EQ(Find(drive), "missing") << "the case of a folder counts";
}

TEST_F(Locations, ThatAreMappedAreSoughtNowhereElse) {
  Put("iTunes Media/1.mp3");
  options_.maps = {"/Users/me=" + Path("new")};
  EXPECT_EQ(Find("file:///Users/me/Music/iTunes/iTunes%20Media/1.mp3"), "missing");
  const std::string path = Put("new/Music/iTunes/iTunes Media/1.mp3");
  EXPECT_EQ(Find("file:///Users/me/Music/iTunes/iTunes%20Media/1.mp3"), "found " + path);
  EXPECT_EQ(found_, Path("new/Music/iTunes/iTunes Media")) << "where the music folder is now";
}

// ---- How they are spelled -----------------------------------------------------------------------

TEST_F(Locations, AreFoundInEitherNormalForm) {
  const std::string apart = Put(std::string("x/") + kApart + "/" + kApart + ".mp3");
  EXPECT_EQ(Find("file://" + Path("x/Caf%C3%A9/Caf%C3%A9.mp3")), "respelled " + apart);
  EXPECT_EQ(Find("file://" + Path("x/Cafe%CC%81/Cafe%CC%81.mp3")), "found " + apart);
  const std::string composed = Put(std::string("y/") + kComposed + "/" + kComposed + ".mp3");
  EXPECT_EQ(Find("file://" + Path("y/Cafe%CC%81/Cafe%CC%81.mp3")), "respelled " + composed);
}

TEST_F(Locations, AreFoundInAnotherCaseWhereNothingElseFits) {
  const std::string upper = Put("x/A/SONG.MP3");
  EXPECT_EQ(Find("file://" + Path("X/a/Song.mp3")), "respelled " + upper);
  const std::string apart = Put(std::string("x/A/") + kApart + ".mp3");
  Put("x/A/CAF\u00C9.mp3");
  EXPECT_EQ(Find("file://" + Path("x/A/Caf%C3%A9.mp3")), "respelled " + apart);
  const std::string exact = Put("x/A/Song.mp3");
  EXPECT_EQ(Find("file://" + Path("x/A/Song.mp3")), "found " + exact);
}

// A copy of a Mac's folders and one of a PC's, put together.
TEST_F(Locations, AreFoundInAllFoldersThatAreAlike) {
  Put(std::string("x/") + kComposed + "/1.mp3");
  const std::string second = Put(std::string("x/") + kApart + "/2.mp3");
  EXPECT_EQ(Find("file://" + Path("x/Caf%C3%A9/2.mp3")), "respelled " + second);
}

// ---- What is no file ----------------------------------------------------------------------------

TEST_F(Locations, ThatNameNoRegularFileAreMissing) {
  Put("folder/1.mp3");
  ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
  ASSERT_EQ(::symlink("pipe", Path("to pipe").c_str()), 0);
  ASSERT_EQ(::symlink("nothing", Path("broken").c_str()), 0);
  ASSERT_EQ(::symlink("folder/1.mp3", Path("link").c_str()), 0);
  for (const std::string name : {"folder", "pipe", "to%20pipe", "broken", "folder/1.mp3/2.mp3"}) {
    EXPECT_EQ(Find("file://" + Path(name)), "missing") << name;
  }
  EXPECT_EQ(Find("file:///dev/zero"), "missing");
  EXPECT_EQ(Find("file://" + Path("link")), "found " + Path("link"));
  EXPECT_EQ(Find("file://" + Path("folder/1.mp3/")), "found " + Path("folder/1.mp3"))
      << "one slash at the end counts for nothing";
}

TEST_F(Locations, ThatLeadUpwardsNameNoFile) {
  Put("secret.txt");
  Put("iTunes Media/1.mp3");
  for (const std::string tail : {"../secret.txt", "%2E%2E/secret.txt", "./1.mp3", "x/../1.mp3"}) {
    EXPECT_EQ(Find("file:///Users/me/Music/iTunes/iTunes%20Media/" + tail), "missing") << tail;
    EXPECT_EQ(Find("file://" + Path("iTunes%20Media/" + tail)), "missing") << tail;
  }
  options_.maps = {"/old=" + Path("iTunes Media")};
  EXPECT_EQ(Find("file:///old/../secret.txt"), "missing");
  EXPECT_EQ(Find("file:///old/1.mp3"), "found " + Path("iTunes Media/1.mp3"));
}

TEST_F(Locations, ThatNoSystemHasAreMissing) {
  const std::string longName(300, 'x');
  const std::string longer(100000, 'x');
  std::string deep;
  for (int i = 0; i < 50000; ++i) deep += "/x";
  for (const std::string location :
       {"file:", "file:/", "file:///", "file://", "file://nas", "file:///%00.mp3", "file:///a%00/b",
        "file:///%FF.mp3", "file:///%", "file:relative.mp3", "file:///a b"}) {
    EXPECT_EQ(Find(location), "missing") << location;
  }
  EXPECT_EQ(Find("file:///" + longName), "missing");
  EXPECT_EQ(Find("file:///" + longer), "missing");
  EXPECT_EQ(Find("file://" + deep), "missing");
  EXPECT_EQ(Find("file:///" + deep + longer), "missing");
}

TEST_F(Locations, MayHoldAnyCharacter) {
  for (const std::string name : {"a\nb", "\"'`$(x)", "CON", "x.", " y ", "-rf", "\x01\x7F"}) {
    const std::string path = Put("x/" + name);
    std::string escaped;
    for (const char c : name) {
      constexpr const char* kDigits = "0123456789ABCDEF";
      const auto byte = static_cast<unsigned char>(c);
      (escaped += '%') += kDigits[byte >> 4];
      escaped += kDigits[byte & 15u];
    }
    EXPECT_EQ(Find("file://" + Path("x/" + escaped)), "found " + path);
  }
}

TEST_F(Locations, OfNamesThatAreNoTextLieBesideTheOthers) {
  Put("x/\xFF.mp3");
  Put("x/\xC3.mp3");
  const std::string path = Put("x/SONG.mp3");
  EXPECT_EQ(Find("file://" + Path("x/song.mp3")), "respelled " + path);
}

TEST_F(Locations, ElsewhereAreRemoteAndWithoutAnyThereIsNone) {
  SongFiles files(options_, musicFolder_, libraryFolder_);
  EXPECT_EQ(files.Find("http://x/1.mp3", "URL").status, FileStatus::Remote);
  EXPECT_EQ(files.Find(std::nullopt, "Remote").status, FileStatus::Remote);
  EXPECT_EQ(files.Find(std::nullopt, "URL").status, FileStatus::Remote);
  EXPECT_EQ(files.Find(std::nullopt, "File").status, FileStatus::None);
  EXPECT_EQ(files.Find(std::nullopt, "").status, FileStatus::None);
}

// ---- What it costs ------------------------------------------------------------------------------

TEST_F(Locations, TakeOneListingAFolder) {
  SongFiles files(options_, musicFolder_, std::nullopt);
  const auto find = [&](int folder, const std::string& name) {
    const std::string place = "x/" + std::to_string(folder) + "/" + name;
    return files.Find("file://" + Path(place), "").status;
  };
  for (int i = 0; i < 30; ++i) Put("x/" + std::to_string(i % 3) + "/" + std::to_string(i));
  for (int i = 0; i < 30; ++i) EXPECT_EQ(find(i % 3, std::to_string(i)), FileStatus::Found);
  EXPECT_EQ(files.AllFolders().Listings(), 3u);
  EXPECT_EQ(find(0, "none"), FileStatus::Missing);
  const std::size_t withThoseAbove = files.AllFolders().Listings();
  for (int i = 0; i < 30; ++i) EXPECT_EQ(find(i % 3, "none"), FileStatus::Missing);
  EXPECT_EQ(find(7, "none"), FileStatus::Missing);
  EXPECT_EQ(files.AllFolders().Listings(), withThoseAbove);
}

TEST_F(Locations, AreLookedForBehindThePlaceWhereTheFileIsOnlyWhenItMisses) {
  options_.music = Path("disk");
  const std::string first = Put("disk/Music/A/B/1.mp3");
  const std::string behind = Put("disk/A/B/2.mp3");
  SongFiles files(options_, musicFolder_, std::nullopt);
  const std::string album = "file:///Users/me/Music/iTunes/iTunes%20Media/Music/A/B/";
  EXPECT_EQ(files.Find(album + "1.mp3", "").path, first);
  EXPECT_EQ(files.AllFolders().Listings(), 2u) << "of the folder of media, and of the album";
  EXPECT_EQ(files.Find(album + "2.mp3", "").path, behind);
  EXPECT_EQ(files.AllFolders().Listings(), 3u);
  EXPECT_EQ(files.Find(album + "1.mp3", "").path, first);
  EXPECT_EQ(files.Find(album + "2.mp3", "").path, behind);
  EXPECT_EQ(files.AllFolders().Listings(), 3u);
}

TEST_F(Locations, AreMissingBelowTheHighestFolderThatIs) {
  Put("x/1.mp3");
  Put("x/file/1.mp3");
  EXPECT_EQ(HighestMissing(Path("x/a/b/c")), Path("x/a"));
  EXPECT_EQ(HighestMissing(Path("x/a")), Path("x/a"));
  EXPECT_EQ(HighestMissing(Path("x/1.mp3/b/c")), Path("x/1.mp3/b")) << "below a file";
  Folders folders;
  EXPECT_EQ(folders.At(Path("x/a/b/c")), nullptr);
  EXPECT_EQ(folders.At(Path("x/a/b")), nullptr);
  EXPECT_EQ(folders.At(Path("x/a/d")), nullptr);
  Put("x/a/e/1.mp3");
  EXPECT_EQ(folders.At(Path("x/a/e")), nullptr) << "it was looked at once";
  Put("x/a2/1.mp3");
  EXPECT_NE(folders.At(Path("x/a2")), nullptr);
  EXPECT_NE(folders.At(Path("x")), nullptr);
}

TEST_F(Locations, AreRememberedAsThoseOfSongs) {
  const std::string exact = Put("x/1.mp3");
  const std::string upper = Put("x/SONG.MP3");
  Put("x/other.mp3");
  SongFiles files(options_, musicFolder_, std::nullopt);
  EXPECT_EQ(files.Find("file://" + Path("x/1.mp3"), "").path, exact);
  EXPECT_EQ(files.Find("file://" + Path("x/song.mp3"), "").path, upper);
  EXPECT_EQ(files.Find("file://" + Path("x/none.mp3"), "").path, "");
  std::vector<std::string> ofSongs;
  for (const FolderEntry& entry : files.AllFolders().At(Path("x"))->Entries()) {
    if (entry.isOfSong) ofSongs.emplace_back(entry.name);
  }
  EXPECT_EQ(ofSongs, (std::vector<std::string>{"1.mp3", "SONG.MP3"}));
}

TEST_F(Locations, AreToldWithoutALookAtTheDisk) {
  options_.form = PathForm::AsWritten;
  EXPECT_EQ(Find("file:///a/Caf%C3%A9.mp3"), std::string("unknown /a/") + kComposed + ".mp3");
  EXPECT_EQ(Find("file:///x.mp3"), "unknown /x.mp3");
  options_.form = PathForm::Decomposed;
  EXPECT_EQ(Find("file:///a/Caf%C3%A9.mp3"), std::string("unknown /a/") + kApart + ".mp3");
  options_.form = PathForm::Composed;
  EXPECT_EQ(Find("file:///a/Cafe%CC%81.mp3"), std::string("unknown /a/") + kComposed + ".mp3");
  options_.music = "D:/Music";
  EXPECT_EQ(Find("file:///Users/me/Music/iTunes/iTunes%20Media/1.mp3"), "unknown D:/Music/1.mp3");
  options_.maps = {"/Users=elsewhere"};
  EXPECT_EQ(Find("file:///Users/me/1.mp3"), "unknown elsewhere/me/1.mp3");
  EXPECT_EQ(Find("http://x/1.mp3"), "remote");
}

}  // namespace
}  // namespace tavrel::test
