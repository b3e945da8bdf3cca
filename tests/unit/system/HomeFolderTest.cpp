#include <gtest/gtest.h>
#include <pwd.h>
#include <stdlib.h>
#include <unistd.h>

#include "system/HomeFolder.h"

using tavrel::system::HomeFolder;

namespace {

// Sets HOME for the length of a test.
class HomeVariable {
 public:
  explicit HomeVariable(const char* value) {
    const char* former = getenv("HOME");
    hadFormer_ = former != nullptr;
    if (hadFormer_) former_ = former;
    if (value == nullptr) {
      unsetenv("HOME");
    } else {
      setenv("HOME", value, 1);
    }
  }
  HomeVariable(const HomeVariable&) = delete;
  HomeVariable& operator=(const HomeVariable&) = delete;
  ~HomeVariable() {
    if (hadFormer_) {
      setenv("HOME", former_.c_str(), 1);
    } else {
      unsetenv("HOME");
    }
  }

 private:
  bool hadFormer_ = false;
  std::string former_;
};

std::optional<std::string> FolderOfThePasswordEntry() {
  const passwd* entry = getpwuid(getuid());
  if (entry == nullptr || entry->pw_dir[0] != '/') return std::nullopt;
  return entry->pw_dir;
}

}  // namespace

TEST(HomeFolder, IsTheHomeVariableWhenThatIsAnAbsolutePath) {
  const HomeVariable home("/some where/100%#?;");
  EXPECT_EQ(HomeFolder(), "/some where/100%#?;");
}

TEST(HomeFolder, MayHoldBytesThatAreNotUtf8) {
  const HomeVariable home("/caf\xE9\x80/\xFF");
  EXPECT_EQ(HomeFolder(), "/caf\xE9\x80/\xFF");
}

TEST(HomeFolder, MayBeTheTopFolder) {
  const HomeVariable home("/");
  EXPECT_EQ(HomeFolder(), "/");
}

TEST(HomeFolder, IsThePasswordEntrysFolderWhenTheVariableIsRelative) {
  const HomeVariable home("some/where");
  EXPECT_EQ(HomeFolder(), FolderOfThePasswordEntry());
}

TEST(HomeFolder, IsThePasswordEntrysFolderWhenTheVariableIsEmpty) {
  const HomeVariable home("");
  EXPECT_EQ(HomeFolder(), FolderOfThePasswordEntry());
}

TEST(HomeFolder, IsThePasswordEntrysFolderWhenTheVariableIsMissing) {
  const HomeVariable home(nullptr);
  EXPECT_EQ(HomeFolder(), FolderOfThePasswordEntry());
}

TEST(HomeFolder, IsReadAfreshEachTime) {
  const HomeVariable first("/first");
  EXPECT_EQ(HomeFolder(), "/first");
  const HomeVariable second("/second");
  EXPECT_EQ(HomeFolder(), "/second");
}
