// A library file that changes while it is read: what was there when its turn came is what counts.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <ostream>
#include <string>

#include "agent/Exports.h"
#include "tests/fault/AllocationCount.h"
#include "tests/fault/FaultPlan.h"
#include "tests/fault/InsideLibrary.h"
#include "tests/fault/StateCheck.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/TemporaryHome.h"

namespace tavrel::test {
namespace {

namespace fs = std::filesystem;

constexpr int kSongsWritten = 4000;

// The file at hand, for changes that are made in the middle of a read and take no argument.
constinit const char* changing = nullptr;

std::size_t Empty(std::size_t asked) {
  fs::resize_file(changing, 0);
  return asked;
}
std::size_t Halve(std::size_t asked) {
  fs::resize_file(changing, fs::file_size(changing) / 2);
  return asked;
}
std::size_t Cut(std::size_t asked) {
  fs::resize_file(changing, fs::file_size(changing) - 1);
  return asked;
}
std::size_t Grow(std::size_t asked) {
  fs::resize_file(changing, fs::file_size(changing) + 100000);
  return asked;
}
std::size_t Remove(std::size_t asked) {
  fs::remove(changing);
  return asked;
}

struct Change {
  const char* name;
  std::size_t (*make)(std::size_t asked);
  bool isHarmless;  // everything that there was at the start is read
};
void PrintTo(const Change& change, std::ostream* stream) {
  *stream << change.name;
}

constexpr Change kChanges[] = {{"emptied", Empty, false},
                               {"halved", Halve, false},
                               {"cut by a byte", Cut, true},  // behind the last element
                               {"grown", Grow, true},
                               {"removed", Remove, true}};

std::string LongLibrary() {
  std::string tracks;
  for (int id = 1; id <= kSongsWritten; ++id) tracks += Track(id, TextPair("Name", "Caf\u00e9"));
  return LibraryText({tracks, {}});
}

class ChangingFile : public testing::TestWithParam<Change> {};

}  // namespace

TEST_P(ChangingFile, IsReadAsFarAsItReaches) {
  const TemporaryHome home;
  const std::string place = home.LibraryFile();
  const std::string text = LongLibrary();
  setenv("HOME", home.path().c_str(), 1);
  changing = place.c_str();
  std::int64_t met = 1;
  for (std::int64_t n = 0; met > 0; ++n) {
    home.WriteLibrary(text);
    const CapturedStderr log;
    const HeldMemory held = Held();
    BeginFaults({CallKind::Read, n, true, 0, GetParam().make});
    const std::int32_t loaded = Inside([] { return AgentInitializer(); });
    EndFaults();
    met = FaultsMet();
    ExpectConsistentState();
    const std::int32_t songs = kLinkedFunctions.getSongCount(kLinkedFunctions.openAllSongs());
    EXPECT_LE(songs, kSongsWritten);
    if (GetParam().isHarmless || met == 0) {
      EXPECT_EQ(loaded, 0);
      EXPECT_EQ(songs, kSongsWritten);
    }
    EXPECT_EQ(Inside([] { return AgentFinalizer(); }), 0);
    EXPECT_EQ(Held(), held) << n;
  }
}

INSTANTIATE_TEST_SUITE_P(While, ChangingFile, testing::ValuesIn(kChanges), [](const auto& change) {
  std::string name = change.param.name;
  std::erase(name, ' ');
  return name;
});

}  // namespace tavrel::test
