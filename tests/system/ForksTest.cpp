// A host that forks while the library is loaded: both sides go on using everything.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/support/CapturedStderr.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/Soak.h"
#include "tests/support/StandInRunner.h"
#include "tests/support/WholeUse.h"

namespace tavrel::test {
namespace {

enum Answer : int { kSame = 0, kOther = 1, kNotUnloaded = 2 };

// What a host holds when it forks.
struct Held {
  Held() = default;
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  ~Held() { Release(); }

  // Result: that of dlclose.
  int Release() {
    if (artwork != nullptr) library.Get<decltype(&CloseArtwork)>("CloseArtwork")(artwork);
    artwork = nullptr;
    return library.Unload();
  }

  LoadedLibrary library;
  ArtworkHandle* artwork = OpenFirstArtwork(FunctionsOf(library));
};

struct Expected {
  std::string everything;
  std::string images;
};

// The images are read through the handle that was opened before the fork, which both sides share.
bool IsAsExpected(const Held& held, const Expected& expected) {
  const FindFunction find = FunctionsOf(held.library);
  for (int i = 0; i < 8; ++i) {
    if (ReadImages(find, held.artwork) != expected.images) return false;
  }
  return UseEverything(find) == expected.everything && Import(find) == 0;
}

// Uses everything, unloads the copy of this process, and loads and uses it anew.
int AnswerOfAChild(Held& held, const Expected& expected) {
  if (!IsAsExpected(held, expected)) return kOther;
  if (held.Release() != 0 || IsLibraryMapped()) return kNotUnloaded;
  return UseEverything(FunctionsOf(LoadedLibrary())) == expected.everything ? kSame : kOther;
}

Expected WhatIsExpected() {
  const Held held;
  const FindFunction find = FunctionsOf(held.library);
  return {UseEverything(find), ReadImages(find, held.artwork)};
}

}  // namespace

TEST(Forks, BothSidesGoOnUsingEverything) {
  const ScopedVariable home("HOME", TAVREL_SAMPLE_HOME);
  const StandInRunner runner("exit 0");
  const CapturedStderr log;
  const Expected expected = WhatIsExpected();
  EXPECT_GT(expected.images.size(), 100u);
  const int forks = Soaked(20, 1000);
  for (int i = 0; i < forks; ++i) {
    Held held;
    // Some of it is asked before the fork, so that what is made on first use is made on either side.
    if (i % 2 == 0) {
      EXPECT_TRUE(IsAsExpected(held, expected));
    }
    const pid_t child = fork();
    if (child == 0) _exit(AnswerOfAChild(held, expected));
    ASSERT_GT(child, 0);
    EXPECT_TRUE(IsAsExpected(held, expected));
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    ASSERT_EQ(WEXITSTATUS(status), kSame) << "fork " << i;
  }
  EXPECT_EQ(log.Text(), "");
  PrintFigure(forks, "forks, both sides using everything");
}

}  // namespace tavrel::test
