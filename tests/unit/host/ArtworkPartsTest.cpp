// The parts of `tavrel artwork`.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <functional>

#include "host/artwork/FileNames.h"
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

TEST(SafeName, LosesWhatIsNoPartOfAFileName) {
  EXPECT_EQ(SafeName("a/b"), "a_b");
  EXPECT_EQ(SafeName("..hidden"), "hidden");
  EXPECT_EQ(SafeName(" . . x "), "x");
  EXPECT_EQ(SafeName("a\x01\x7F"
                     "b\x1B[31m"),
            "ab[31m");
  EXPECT_EQ(SafeName("a\nb"), "a b");
  EXPECT_EQ(SafeName("caf\xE9"), "caf\uFFFD");
  EXPECT_EQ(SafeName("..."), "");
  EXPECT_EQ(SafeName(std::string_view("a\0b", 3)), "ab");
}

TEST(SafeName, LosesWhatAnyFileSystemRefuses) {
  EXPECT_EQ(SafeName("a?b:c\"d*e<f>g|h\\i/j"), "a_b_c_d_e_f_g_h_i_j");
  EXPECT_EQ(SafeName("Who?"), "Who_");
}

TEST(CutToBytes, CutsNoCharacterAndKeepsMarksWithTheirBase) {
  EXPECT_EQ(CutToBytes("abc", 3), "abc");
  EXPECT_EQ(CutToBytes("abc", 2), "ab");
  EXPECT_EQ(CutToBytes("a\u00e9b", 2), "a");
  EXPECT_EQ(CutToBytes("ae\u0301b", 2), "a");
  EXPECT_EQ(CutToBytes("ae\u0301b", 4), "ae\u0301");
  EXPECT_EQ(CutToBytes("\u7b8f\u7b8f", 5), "\u7b8f");
  EXPECT_EQ(CutToBytes("\U0001D11E", 3), "");
}

TEST(FileNames, AreUniqueWhateverTheCaseAndComposition) {
  FileNames names;
  EXPECT_EQ(names.Take("a", ".png"), "a.png");
  EXPECT_EQ(names.Take("A", ".png"), "A (2).png");
  EXPECT_EQ(names.Take("a", ".jpg"), "a.jpg");
  EXPECT_EQ(names.Take("\u00e9", ".png"), "\u00e9.png");
  EXPECT_EQ(names.Take("e\u0301", ".png"), "e\u0301 (2).png");
  const std::string longName(300, 'x');
  EXPECT_EQ(names.Take(longName, ".png").size(), 255U);
  const std::string second = names.Take(longName, ".png");
  EXPECT_EQ(second.size(), 255U);
  EXPECT_TRUE(second.ends_with(" (2).png"));
}

TEST(FileNames, SuitEveryFileSystem) {
  FileNames names;
  EXPECT_EQ(names.Take("Vol. 1. .", ".png"), "Vol. 1.png");
  EXPECT_EQ(names.Take("", ".png"), "Untitled.png");
  EXPECT_EQ(names.Take("con", ".png"), "_con.png");
  EXPECT_EQ(names.Take("Aux .x", ".png"), "_Aux .x.png");
  EXPECT_EQ(names.Take("LPT9.a.b", ".png"), "_LPT9.a.b.png");
  EXPECT_EQ(names.Take("COM\u00b9", ".png"), "_COM\u00b9.png");
  EXPECT_EQ(names.Take("concert", ".png"), "concert.png");
  EXPECT_EQ(names.Take("COM", ".png"), "COM.png");
  EXPECT_EQ(names.Take("com10", ".png"), "com10.png");
  EXPECT_EQ(names.Take("a\u200db", ".png"), "a\u200db.png");
  EXPECT_EQ(names.Take("ab", ".png"), "ab (2).png") << "some file systems see no difference";
  const std::string longName = std::string(250, 'x') + ".....";
  EXPECT_EQ(names.Take(longName, ".png"), std::string(250, 'x') + ".png");
}

TEST(FileNames, GoOnBehindANumberThatIsTaken) {
  FileNames names;
  EXPECT_EQ(names.Take("a (2)", ".png"), "a (2).png");
  EXPECT_EQ(names.Take("a", ".png"), "a.png");
  EXPECT_EQ(names.Take("a", ".png"), "a (3).png");
  EXPECT_EQ(names.Take("a (2)", ".png"), "a (2) (2).png");
  for (int number = 4; number <= 120; ++number) {
    EXPECT_EQ(names.Take("A", ".png"), "A (" + std::to_string(number) + ").png");
  }
}

// How many names are tried for `count` files whose names are hard to tell apart.
std::size_t NamesTried(int count, const std::function<std::string(int)>& stem) {
  FileNames names;
  for (int i = 0; i < count; ++i) (void)names.Take(stem(i), ".png");
  return names.Tried();
}

TEST(FileNames, TakeLinearWorkHoweverManyAreEqual) {
  const std::vector<std::function<std::string(int)>> families{
      [](int) { return "cover"; },
      // Stems that look like the names that equal ones get.
      [](int i) { return i % 2 == 0 ? "a" : "a (" + std::to_string(2 + i / 2) + ")"; },
      // Stems that only become equal when they are cut.
      [](int i) { return std::string(300, 'x') + std::to_string(i); },
      // Pairs of stems, each of which is cut to the same for its number.
      [](int i) { return std::string(247, 'x') + std::to_string(1000 + i / 2); }};
  for (std::size_t family = 0; family < families.size(); ++family) {
    const std::size_t few = NamesTried(500, families[family]);
    const std::size_t many = NamesTried(4000, families[family]);
    EXPECT_LE(many, 9 * few) << family;
    EXPECT_LE(many, 3 * 4000) << family;
  }
}

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

}  // namespace
}  // namespace tavrel::host
