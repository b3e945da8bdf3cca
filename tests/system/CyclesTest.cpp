// Loading and unloading again and again gives everything back.
#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/support/CapturedStderr.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/Survey.h"
#include "tests/support/TemporaryHome.h"

using namespace tavrel::test;

namespace {

constexpr int kCycles = 1000;

std::ptrdiff_t OpenDescriptors() {
  namespace fs = std::filesystem;
  return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

long ResidentPages() {
  std::ifstream statm("/proc/self/statm");
  long total = 0;
  long resident = 0;
  statm >> total >> resident;
  return resident;
}

long MappedPages() {
  std::ifstream statm("/proc/self/statm");
  long total = 0;
  statm >> total;
  return total;
}

void Cycle(const TemporaryHome& home, bool query) {
  LoadedLibrary library(home.path());
  if (query) {
    EXPECT_EQ(SeePlaylists(library.functions()).size(), 6u);
    EXPECT_EQ(SeeSongs(library.functions(), library->openAllSongs()).size(), 5u);
  }
  EXPECT_EQ(library.Unload(), 0);
}

// Leaks are AddressSanitizer's to find where it is in use: its allocator keeps freed memory back.
void ExpectNothingKept(const TemporaryHome& home, bool query) {
  for (int i = 0; i < 20; ++i) Cycle(home, query);  // the process settles
  const std::ptrdiff_t descriptors = OpenDescriptors();
  const std::size_t bytes = mallinfo2().uordblks;
  const long mapped = MappedPages();
  const long resident = ResidentPages();
  for (int i = 0; i < kCycles; ++i) Cycle(home, query);
  EXPECT_EQ(OpenDescriptors(), descriptors);
  if (kSanitized) return;
  // One lost block a cycle would be 32 bytes or more each; what is cached for reuse counts as used.
  EXPECT_LE(mallinfo2().uordblks, bytes + 16 * kCycles);
  EXPECT_LE(MappedPages(), mapped + 64);
  EXPECT_LE(ResidentPages(), resident + 256);
}

}  // namespace

TEST(ThousandCycles, KeepNoMemoryAndNoDescriptor) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  ExpectNothingKept(home, false);
}

TEST(ThousandCycles, WithQueriesKeepNoMemoryAndNoDescriptor) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  ExpectNothingKept(home, true);
}

TEST(ThousandCycles, WithoutALibraryFileKeepNothing) {
  const TemporaryHome home;
  const CapturedStderr log;
  ExpectNothingKept(home, false);
}

TEST(ThousandCycles, WithAFileThatIsNoTextKeepNothing) {
  const TemporaryHome home;
  home.WriteLibrary("<plist>\xFF</plist>");
  const CapturedStderr log;
  ExpectNothingKept(home, false);
}

TEST(Descriptors, NoneStaysOpenWhileTheLibraryIsLoaded) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  const std::ptrdiff_t before = OpenDescriptors();
  const LoadedLibrary library(home.path());
  EXPECT_TRUE(library.HasDocument());
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST(LargeLibrary, GivesItsMappedMemoryBack) {
  const TemporaryHome home;
  std::string tracks;
  for (int id = 1; id <= 20000; ++id) tracks += Track(id, TextPair("Name", "x"));
  home.WriteLibrary(LibraryText({tracks, Playlist(TextPair("Name", "p"), {1, 20000})}));
  const auto cycle = [&home] {
    LoadedLibrary library(home.path());
    EXPECT_EQ(library->getSongCount(library->openAllSongs()), 20000);
    EXPECT_EQ(library.Unload(), 0);
  };
  for (int i = 0; i < 3; ++i) cycle();
  const long mapped = MappedPages();
  for (int i = 0; i < 20; ++i) cycle();
  if (!kSanitized) {
    EXPECT_LE(MappedPages(), mapped + 64);
  }
}
