// Loading and unloading again and again gives everything back.
#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "tests/support/CapturedStderr.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/Soak.h"
#include "tests/support/Survey.h"
#include "tests/support/TemporaryHome.h"

using namespace tavrel::test;

namespace {

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

// What the C library caches for reuse, a few blocks of each size, counts as used. One lost block a cycle
// would be 32 bytes or more for each of them.
constexpr std::size_t kCachedBytes = 8192;

// Leaks are AddressSanitizer's to find where it is in use: its allocator keeps freed memory back.
void ExpectNothingKept(const TemporaryHome& home, bool query, const std::string& what) {
  const int cycles = Soaked(200, 10000);
  for (int i = 0; i < 100; ++i) Cycle(home, query);  // the process settles
  const std::ptrdiff_t descriptors = OpenDescriptors();
  const std::size_t bytes = mallinfo2().uordblks;
  const long mapped = MappedPages();
  const long resident = ResidentPages();
  for (int i = 0; i < cycles; ++i) Cycle(home, query);
  EXPECT_EQ(OpenDescriptors(), descriptors);
  if (kSanitized) return;
  const std::size_t grown = mallinfo2().uordblks - std::min(bytes, mallinfo2().uordblks);
  EXPECT_LE(grown, std::min<std::size_t>(kCachedBytes, 24 * static_cast<std::size_t>(cycles)));
  EXPECT_LE(MappedPages(), mapped + 16);
  EXPECT_LE(ResidentPages(), resident + 64);
  PrintFigure(static_cast<std::int64_t>(grown), "bytes more in use, cached ones included, and " +
                                                    std::to_string(MappedPages() - mapped) +
                                                    " pages more mapped, after " +
                                                    std::to_string(cycles) + " cycles " + what);
}

}  // namespace

TEST(Cycles, KeepNoMemoryAndNoDescriptor) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  ExpectNothingKept(home, false, "of loading");
}

TEST(Cycles, WithQueriesKeepNoMemoryAndNoDescriptor) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  ExpectNothingKept(home, true, "of loading and asking");
}

TEST(Cycles, WithoutALibraryFileKeepNothing) {
  const TemporaryHome home;
  const CapturedStderr log;
  ExpectNothingKept(home, false, "without a library file");
}

TEST(Cycles, WithAFileThatIsNoTextKeepNothing) {
  const TemporaryHome home;
  home.WriteLibrary("<plist>\xFF</plist>");
  const CapturedStderr log;
  ExpectNothingKept(home, false, "with a file that is no text");
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
