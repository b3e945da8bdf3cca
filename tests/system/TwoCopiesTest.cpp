// Two copies of the library in one process, as when a host is linked with it and loads a plug-in that
// brings its own: each keeps to its own data.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>

#include "tests/support/LibraryTexts.h"
#include "tests/support/Survey.h"
#include "tests/support/TemporaryHome.h"

namespace tavrel::test {
namespace {

class Copy {
 public:
  Copy(const std::string& file, const std::string& home, int flags) {
    setenv("HOME", home.c_str(), 1);
    handle_ = dlopen(file.c_str(), flags);
    EXPECT_NE(handle_, nullptr) << dlerror();
  }
  Copy(const Copy&) = delete;
  Copy& operator=(const Copy&) = delete;
  ~Copy() { Unload(); }

  void Unload() {
    EXPECT_EQ(handle_ == nullptr ? 0 : dlclose(handle_), 0);
    handle_ = nullptr;
  }
  [[nodiscard]] std::int32_t SongCount() const {
    auto* openAllSongs = reinterpret_cast<decltype(&OpenAllSongs)>(dlsym(handle_, "OpenAllSongs"));
    auto* getSongCount = reinterpret_cast<decltype(&GetSongCount)>(dlsym(handle_, "GetSongCount"));
    return getSongCount(openAllSongs());
  }

 private:
  void* handle_ = nullptr;
};

class TwoCopies : public testing::TestWithParam<int> {};

}  // namespace

TEST_P(TwoCopies, EachKeepsItsOwnLibraryAndOneMayGoBeforeTheOther) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  const TemporaryHome empty("empty");
  const std::string copied = home.parent() + "/libOther.so";
  std::filesystem::copy_file(TAVREL_LIBRARY, copied);

  const Copy first(TAVREL_LIBRARY, home.path(), GetParam());
  const std::int32_t songs = first.SongCount();
  EXPECT_GT(songs, 0);
  Copy second(copied, empty.path(), GetParam());
  EXPECT_EQ(second.SongCount(), 0);
  EXPECT_EQ(first.SongCount(), songs);
  second.Unload();
  EXPECT_EQ(first.SongCount(), songs);
}

INSTANTIATE_TEST_SUITE_P(Loaded, TwoCopies,
                         testing::Values(RTLD_NOW | RTLD_GLOBAL, RTLD_LAZY | RTLD_GLOBAL,
                                         RTLD_NOW | RTLD_LOCAL),
                         [](const auto& loaded) {
                           return std::string((loaded.param & RTLD_GLOBAL) != 0 ? "Globally"
                                                                                : "Locally") +
                                  ((loaded.param & RTLD_NOW) != 0 ? "AtOnce" : "Lazily");
                         });

}  // namespace tavrel::test
