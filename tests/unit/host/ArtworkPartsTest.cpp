// The parts of `tavrel artwork`.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>

#include "host/artwork/PersistentIds.h"
#include "host/artwork/PictureFiles.h"
#include "host/output/Failure.h"
#include "host/output/NewFile.h"
#include "host/output/Progress.h"
#include "host/output/Text.h"
#include "tests/support/CacheFiles.h"
#include "tests/support/TemporaryFolder.h"

namespace tavrel::host {
namespace {

using test::TemporaryFolder;

TEST(WriteNewFile, KeepsOrReplacesInOneStep) {
  const TemporaryFolder folder;
  const std::string path = folder.PathOf("a");
  EXPECT_TRUE(WriteNewFile(path, "one", IfThere::Keep));
  EXPECT_FALSE(WriteNewFile(path, "two", IfThere::Keep));
  EXPECT_EQ(std::filesystem::file_size(path), 3U);
  EXPECT_TRUE(WriteNewFile(path, "three", IfThere::Replace));
  EXPECT_EQ(std::filesystem::file_size(path), 5U);
  const auto entries = std::filesystem::directory_iterator(folder.path());
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

TEST(WriteNewFile, NeverWritesThroughALink) {
  const TemporaryFolder folder;
  const std::string other = folder.Write("other", "mine");
  const std::string link = folder.PathOf("link");
  ASSERT_EQ(symlink(other.c_str(), link.c_str()), 0);
  EXPECT_FALSE(WriteNewFile(link, "x", IfThere::Keep));
  EXPECT_TRUE(WriteNewFile(link, "x", IfThere::Replace));
  EXPECT_FALSE(std::filesystem::is_symlink(link));
  EXPECT_EQ(std::filesystem::file_size(other), 4U);
}

TEST(WriteNewFile, WhatCannotBeWrittenIsAFailureAndLeavesNothing) {
  const TemporaryFolder folder;
  EXPECT_THROW((void)WriteNewFile(folder.PathOf("missing/a"), "x", IfThere::Keep), Failure);
  std::filesystem::create_directory(folder.PathOf("taken"));
  EXPECT_FALSE(WriteNewFile(folder.PathOf("taken"), "x", IfThere::Keep));
  EXPECT_THROW((void)WriteNewFile(folder.PathOf("taken"), "x", IfThere::Replace), Failure);
  const auto entries = std::filesystem::directory_iterator(folder.path());
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

TEST(WriteNewFile, AnInterruptedProgramLeavesNoTemporaryFile) {
  const TemporaryFolder folder;
  const std::string path = folder.PathOf("a");
  const std::string bytes(100000, 'x');
  for (int delay = 0; delay < 40; ++delay) {
    const pid_t child = fork();
    if (child == 0) {
      for (;;) (void)WriteNewFile(path, bytes, IfThere::Replace);
    }
    usleep(static_cast<useconds_t>(1000 + 37 * delay));
    kill(child, SIGINT);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
      ASSERT_EQ(entry.path().filename(), "a");
      ASSERT_EQ(entry.file_size(), bytes.size());
    }
  }
}

std::ptrdiff_t EntriesOf(const TemporaryFolder& folder) {
  const auto entries = std::filesystem::directory_iterator(folder.path());
  return std::distance(begin(entries), end(entries));
}

TEST(NewFile, IsThereWhenItIsFinished) {
  const TemporaryFolder folder;
  const std::string path = folder.PathOf("a");
  {
    NewFile file(path);
    for (int i = 0; i < 1000; ++i) file.Write(std::string(100, 'x'));
    EXPECT_FALSE(IsTaken(path));
    EXPECT_EQ(EntriesOf(folder), 1);
  }
  EXPECT_EQ(EntriesOf(folder), 0) << "one that is not finished goes";
  NewFile file(path);
  for (int i = 0; i < 1000; ++i) file.Write(std::string(100, 'x'));
  EXPECT_TRUE(file.Finish(IfThere::Keep));
  EXPECT_EQ(std::filesystem::file_size(path), 100000u);
  NewFile other(path);
  other.Write("x");
  EXPECT_FALSE(other.Finish(IfThere::Keep));
  EXPECT_EQ(std::filesystem::file_size(path), 100000u);
}

TEST(MakeFolders, MakesThoseThatAreMissing) {
  const TemporaryFolder folder;
  const std::string path = folder.PathOf("a/b//c");
  MakeFolders(path);
  EXPECT_TRUE(std::filesystem::is_directory(path));
  MakeFolders(path + "/");
  folder.Write("file", "x");
  EXPECT_THROW(MakeFolders(folder.PathOf("file")), Failure);
  EXPECT_THROW(MakeFolders(folder.PathOf("file/a")), Failure);
  EXPECT_THROW(MakeFolders(folder.PathOf(std::string(300, 'x'))), Failure);
}

TEST(NewFile, IsGivenUpWhenTheProgramIsToEnd) {
  const TemporaryFolder folder;
  const pid_t child = fork();
  if (child == 0) {
    try {
      NewFile file(folder.PathOf("a"));
      raise(SIGINT);
      for (int i = 0; i < 1000; ++i) file.Write(std::string(1000, 'x'));
      _exit(1);
    } catch (const Failure&) {
      _exit(2);  // the signal has come before this
    }
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << status;
  EXPECT_EQ(EntriesOf(folder), 0);
}

TEST(PictureFile, PngIsWholeFromItsSignatureToItsEnd) {
  const auto png = PngOfPixels(std::string(16, '\x80'), 2, 2, PixelOrder::Argb);
  ASSERT_TRUE(png.has_value());
  EXPECT_TRUE(IsWholePng(*png));
  EXPECT_TRUE(IsWholePng(*png + "more"));
  for (std::size_t bytes = 0; bytes < png->size(); ++bytes) {
    EXPECT_FALSE(IsWholePng(png->substr(0, bytes))) << bytes;
  }
  EXPECT_FALSE(IsWholeJpeg(*png));
}

TEST(PictureFile, JpegIsWholeFromItsStartToItsEnd) {
  using namespace std::string_literals;
  // A thumbnail with an end of its own stands in the first segment.
  const std::string jpeg =
      "\xFF\xD8\xFF\xE1\0\6\xFF\xD8\xFF\xD9\xFF\xFF\xDA\0\4ab pixels \xFF\0 \xFF\xD9"s;
  EXPECT_TRUE(IsWholeJpeg(jpeg));
  EXPECT_TRUE(IsWholeJpeg(jpeg + "\0\0"s));
  for (std::size_t bytes = 0; bytes < jpeg.size(); ++bytes) {
    EXPECT_FALSE(IsWholeJpeg(jpeg.substr(0, bytes))) << bytes;
  }
  EXPECT_FALSE(IsWholeJpeg("\xFF\xD8\xFF\xE1\0\0\xFF\xD9"s));
  EXPECT_FALSE(IsWholePng(jpeg));
}

TEST(PictureFile, PixelsMustBeAsManyAsTheSizesSay) {
  EXPECT_FALSE(PngOfPixels(std::string(15, 'x'), 2, 2, PixelOrder::Bgra));
  EXPECT_TRUE(PngOfPixels(std::string(17, 'x'), 2, 2, PixelOrder::Bgra));
  EXPECT_FALSE(PngOfPixels("", 0, 2, PixelOrder::Bgra));
  EXPECT_FALSE(PngOfPixels("xxxx", -1, -1, PixelOrder::Bgra));
  EXPECT_FALSE(PngOfPixels("xxxx", 0x7FFFFFFF, 0x7FFFFFFF, PixelOrder::Bgra));
}

// Gives as the library gives texts.
std::int32_t Give(std::string_view text, char* buffer, std::int32_t bufferSize) {
  const auto size = static_cast<std::int32_t>(text.size() + 1);
  if (buffer != nullptr && size <= bufferSize) {
    std::memcpy(buffer, text.data(), text.size());
    buffer[text.size()] = '\0';
  }
  return size;
}

TEST(PersistentIds, AreThoseOfTheSongsInTheirOrder) {
  LibraryFunctions library = {};
  library.openAllSongs = []() noexcept -> PlaylistRecord* { return nullptr; };
  library.getSongCount = [](const PlaylistRecord*) noexcept { return std::int32_t{5}; };
  library.getLibraryProperty = [](const char* key, char* buffer, std::int32_t size) noexcept {
    const bool isId = std::string_view(key) == "Library Persistent ID";
    return isId ? Give("00000000000000aa", buffer, size) : 0;
  };
  library.getSongProperty = [](const PlaylistRecord*, std::int32_t index, const char* key,
                               char* buffer, std::int32_t size) noexcept {
    EXPECT_STREQ(key, "Persistent ID");
    constexpr std::string_view kTexts[] = {"00000000000000f1", "", "00000000000000F3 and more",
                                           "00000000000000F"};
    return index == 4 ? 0 : Give(kTexts[index], buffer, size);
  };
  const PersistentIds ids = ReadPersistentIds(library);
  const std::string none(kNoId);
  EXPECT_EQ(ids.library, "00000000000000AA");
  EXPECT_EQ(ids.tracks,
            (std::vector<std::string>{"00000000000000F1", none, "00000000000000F3", none, none}));
}

TEST(ProgressLine, ShowsCountRateAndTimeLeft) {
  EXPECT_EQ(ProgressLine(50, 100, 2.0, 80),
            "[###############               ] 50/100  25/s  2 s left");
  EXPECT_EQ(ProgressLine(0, 4, 0, 80), "[                              ] 0/4");
  EXPECT_EQ(ProgressLine(4, 4, 1, 30), "[########] 4/4  4/s  0 s left");
  for (std::size_t width = 0; width < 100; ++width) {
    EXPECT_LE(ProgressLine(50, 100, 2.0, width).size(), width);
  }
}

TEST(ProgressLine, ShowsBytesAndLongTimesAsPeopleReadThem) {
  EXPECT_EQ(ProgressLine(1'200'000'000, 4'500'000'000, 40, 80, ProgressOf::Bytes),
            "[########                      ] 1.2 GB/4.5 GB  30 MB/s  110 s left");
  EXPECT_EQ(ProgressLine(1, 1'000, 60, 80),
            "[                              ] 1/1000  0/s  16 hours 39 minutes left");
  EXPECT_EQ(ProgressLine(1, 18'000'000'000'000'000'000u, 1, 30, ProgressOf::Bytes).size(), 30u);
}

}  // namespace
}  // namespace tavrel::host
