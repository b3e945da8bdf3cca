// Where the library file is looked for.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <optional>

#include "tests/support/CapturedStderr.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/Survey.h"
#include "tests/support/TemporaryHome.h"

using namespace tavrel::test;
namespace fs = std::filesystem;

namespace {

// What the password database says of every user; the database itself when it is not set.
std::optional<std::string> passwordHome;
const char kNoEntry[] = "no entry";

}  // namespace

// In place of the system's, also for the library: this program exports its functions.
extern "C" int getpwuid_r(uid_t user, passwd* entry, char* texts, std::size_t size,
                          passwd** found) {
  if (!passwordHome) {
    using Original = int(uid_t, passwd*, char*, std::size_t, passwd**);
    void* original = dlsym(RTLD_NEXT, "getpwuid_r");
    return reinterpret_cast<Original*>(original)(user, entry, texts, size, found);
  }
  *found = nullptr;
  if (*passwordHome == kNoEntry || passwordHome->size() >= size) return 0;
  *entry = {};
  entry->pw_dir = texts;
  texts[passwordHome->copy(texts, size)] = '\0';
  *found = entry;
  return 0;
}

namespace {

const char kMarker[] = "Marker of this test";

std::string MarkedLibrary() {
  return LibraryText({Track(1), Playlist(TextPair("Name", kMarker), {1})});
}

bool LoadsMarkedLibrary(const std::string& home) {
  const CapturedStderr log;
  const LoadedLibrary library(home);
  return PlaylistNamed(library.functions(), kMarker) != nullptr;
}

bool LoadsAnything(const std::string& home) {
  const CapturedStderr log;
  const LoadedLibrary library(home);
  return library.HasDocument();
}

}  // namespace

namespace {

const std::string kNames[] = {"plain",
                              "with blank",
                              " leading and trailing ",
                              "per%cent",
                              "100%",
                              "%41",
                              "%zz",
                              "%2F",
                              "hash#mark",
                              "question?mark",
                              "semi;colon",
                              "a:b",
                              "co,mma",
                              "plus+and&",
                              "equals=at@",
                              "[brackets]{braces}",
                              "quote\"'`",
                              "back\\slash",
                              "pipe|<angles>",
                              "~tilde^",
                              "star*dollar$!",
                              "(round)",
                              "...",
                              ".hidden",
                              "-dash",
                              "new\nline",
                              "carriage\r\nreturn",
                              "tab\tbell\x07",
                              "\x7F",
                              "caf\u00e9",
                              "cafe\u0301",
                              "\u65e5\u672c\u8a9e",
                              "\U0001F3B5",
                              "\xFF\xFE",
                              "lone\x80",
                              "\xC3",
                              "\xED\xA0\x80",
                              std::string(255, 'n'),
                              std::string(255, '\xE9'),
                              std::string(255, '%')};

}  // namespace

TEST(HomePath, OfAnyBytesIsReadByteForByte) {
  for (const std::string& name : kNames) {
    const TemporaryHome home(name);
    home.WriteLibrary(MarkedLibrary());
    EXPECT_TRUE(LoadsMarkedLibrary(home.path())) << name;
  }
}

TEST(HomePath, MayEndWithSlashesAndHoldDots) {
  const TemporaryHome home;
  home.WriteLibrary(MarkedLibrary());
  EXPECT_TRUE(LoadsMarkedLibrary(home.path() + "/"));
  EXPECT_TRUE(LoadsMarkedLibrary(home.path() + "///"));
  EXPECT_TRUE(LoadsMarkedLibrary("//" + home.path()));
  EXPECT_TRUE(LoadsMarkedLibrary(home.parent() + "/./home/../home"));
}

TEST(HomePath, TooLongForTheSystemIsAHomeWithoutALibrary) {
  EXPECT_FALSE(LoadsAnything("/" + std::string(5000, 'x')));
  EXPECT_FALSE(LoadsAnything("/" + std::string(256, 'x')));
  EXPECT_FALSE(LoadsAnything("/" + std::string(1 << 20, '%')));
}

TEST(HomePath, WhoseFoldersAreDeepIsRead) {
  const TemporaryHome home;
  std::string deep = home.path();
  while (deep.size() < 3800) deep += "/deep";
  fs::create_directories(deep + "/Music/iTunes");
  WriteFile(deep + "/Music/iTunes/iTunes Music Library.xml", MarkedLibrary());
  EXPECT_TRUE(LoadsMarkedLibrary(deep));
}

class PasswordDatabase : public testing::Test {
 protected:
  PasswordDatabase() {
    home_.WriteLibrary(MarkedLibrary());
    passwordHome = home_.path();
  }
  ~PasswordDatabase() override { passwordHome.reset(); }

  const TemporaryHome home_{"home of the entry"};
};

TEST_F(PasswordDatabase, NamesTheHomeWhenTheVariableIsMissing) {
  unsetenv("HOME");
  const LoadedLibrary library;
  EXPECT_NE(PlaylistNamed(library.functions(), kMarker), nullptr);
}

TEST_F(PasswordDatabase, NamesTheHomeWhenTheVariableIsNotAbsolute) {
  const TemporaryHome relative("relative");
  relative.WriteLibrary(SmallLibraryText());
  const fs::path before = fs::current_path();
  fs::current_path(relative.parent());
  for (const char* notAbsolute : {"relative", "./relative", "relative/", "", "~", " /"}) {
    EXPECT_TRUE(LoadsMarkedLibrary(notAbsolute)) << notAbsolute;
  }
  fs::current_path(before);
}

TEST_F(PasswordDatabase, IsNotAskedWhenTheVariableIsAbsolute) {
  const TemporaryHome other("other");
  EXPECT_FALSE(LoadsAnything(other.path()));
  EXPECT_FALSE(LoadsAnything("/nonexistent"));
}

TEST_F(PasswordDatabase, WithoutAUsableEntryLeavesNoLibrary) {
  const fs::path before = fs::current_path();
  fs::current_path(home_.parent());
  for (const char* unusable : {"", "home of the entry", "~"}) {
    passwordHome = unusable;
    EXPECT_FALSE(LoadsAnything("")) << unusable;
  }
  passwordHome = kNoEntry;
  EXPECT_FALSE(LoadsAnything(""));
  fs::current_path(before);
}

TEST(HomeFolder, IsReadAtEachLoad) {
  const TemporaryHome first("first");
  const TemporaryHome second("second");
  second.WriteLibrary(MarkedLibrary());
  EXPECT_FALSE(LoadsMarkedLibrary(first.path()));
  EXPECT_TRUE(LoadsMarkedLibrary(second.path()));
  EXPECT_FALSE(LoadsMarkedLibrary(first.path()));
}

TEST(HomeFolder, AndTheFileMayGoAwayAfterTheLoad) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  const LoadedLibrary library(home.path());
  setenv("HOME", "/nonexistent", 1);
  fs::remove_all(home.path());
  PlaylistRecord* music = PlaylistNamed(library.functions(), "Music");
  EXPECT_EQ(SeeSong(library.functions(), music, 0).location.text, "/Users/x/Music/A B.mp3");
}

TEST(HomeFolder, ChangesOfTheFileAfterTheLoadAreNotSeen) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  const LoadedLibrary library(home.path());
  home.WriteLibrary(std::string(100000, 'x'));
  EXPECT_EQ(SongNames(library.functions(), PlaylistNamed(library.functions(), "Movies")),
            std::vector<std::string>{"A Trip to the Moon"});
}

// ---- Links and things that are no files
// -----------------------------------------------------------

namespace {

class LibraryFilePlace : public testing::Test {
 protected:
  LibraryFilePlace() {
    WriteFile(target_, MarkedLibrary());
    alarm(30);  // a load that hangs ends the test
  }
  ~LibraryFilePlace() override { alarm(0); }

  const TemporaryHome home_;
  const std::string target_ = home_.parent() + "/elsewhere.xml";
  const std::string place_ = home_.LibraryFile();
};

}  // namespace

TEST_F(LibraryFilePlace, MayHoldALink) {
  fs::create_symlink(target_, place_);
  EXPECT_TRUE(LoadsMarkedLibrary(home_.path()));
}

TEST_F(LibraryFilePlace, MayHoldAChainOfLinks) {
  fs::create_symlink(target_, home_.parent() + "/second");
  fs::create_symlink("../../../second", place_);
  EXPECT_TRUE(LoadsMarkedLibrary(home_.path()));
}

TEST_F(LibraryFilePlace, MayStandBehindLinkedFolders) {
  const std::string store = home_.parent() + "/store";
  fs::create_directories(store + "/iTunes folder");
  WriteFile(store + "/iTunes folder/iTunes Music Library.xml", MarkedLibrary());
  fs::remove_all(home_.path() + "/Music");
  fs::create_directory(home_.parent() + "/music folder");
  fs::create_symlink(home_.parent() + "/music folder", home_.path() + "/Music");
  fs::create_symlink(store + "/iTunes folder", home_.path() + "/Music/iTunes");
  fs::create_symlink(home_.path(), home_.parent() + "/linked home");
  EXPECT_TRUE(LoadsMarkedLibrary(home_.parent() + "/linked home"));
}

TEST_F(LibraryFilePlace, IsRefusedWithADanglingLink) {
  fs::create_symlink(home_.parent() + "/nothing", place_);
  EXPECT_FALSE(LoadsAnything(home_.path()));
}

TEST_F(LibraryFilePlace, IsRefusedWithALinkToItself) {
  fs::create_symlink(place_, place_);
  EXPECT_FALSE(LoadsAnything(home_.path()));
}

TEST_F(LibraryFilePlace, IsRefusedWithAFolder) {
  fs::create_directory(place_);
  EXPECT_FALSE(LoadsAnything(home_.path()));
}

TEST_F(LibraryFilePlace, IsRefusedWithAFifoAtOnce) {
  ASSERT_EQ(mkfifo(place_.c_str(), 0600), 0);
  EXPECT_FALSE(LoadsAnything(home_.path()));
}

TEST_F(LibraryFilePlace, IsRefusedWithALinkToAFifoAtOnce) {
  const std::string fifo = home_.parent() + "/fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  fs::create_symlink(fifo, place_);
  EXPECT_FALSE(LoadsAnything(home_.path()));
}

TEST_F(LibraryFilePlace, IsRefusedWithADevice) {
  for (const char* device : {"/dev/zero", "/dev/null", "/dev/tty"}) {
    fs::create_symlink(device, place_);
    EXPECT_FALSE(LoadsAnything(home_.path())) << device;
    fs::remove(place_);
  }
}

TEST_F(LibraryFilePlace, IsRefusedWithASocket) {
  const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  ASSERT_LT(place_.size(), sizeof address.sun_path);
  place_.copy(address.sun_path, place_.size());
  ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_FALSE(LoadsAnything(home_.path()));
  close(listener);
}

TEST_F(LibraryFilePlace, IsRefusedWhenAFolderOnTheWayIsAFile) {
  fs::remove_all(home_.path() + "/Music");
  WriteFile(home_.path() + "/Music", "no folder");
  EXPECT_FALSE(LoadsAnything(home_.path()));
}

TEST_F(LibraryFilePlace, IsNamedExactly) {
  fs::rename(target_, home_.path() + "/Music/iTunes/iTunes Library.xml");
  EXPECT_FALSE(LoadsAnything(home_.path()));
}

TEST_F(LibraryFilePlace, IsRefusedWithAFileAboveTheSizeLimit) {
  WriteFile(place_, "<plist>");
  for (const std::uintmax_t size : {(std::uintmax_t{1} << 31) - (1 << 20) + 1,
                                    std::uintmax_t{1} << 32, std::uintmax_t{1} << 40}) {
    fs::resize_file(place_, size);  // sparse
    EXPECT_FALSE(LoadsAnything(home_.path())) << size;
  }
}
