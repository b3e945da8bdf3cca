#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>

#include "system/Files.h"
#include "system/Memory.h"
#include "tests/support/TemporaryFolder.h"
#include "text/TextFile.h"

namespace faults = tavrel::system::faults;
using namespace tavrel::system;
using namespace tavrel::text;
using tavrel::test::TemporaryFolder;

namespace {

constexpr std::size_t kPiece = std::size_t{128} << 10;  // what is read and checked at once

// The text of a file, or "none".
std::string TextOf(const std::string& path) {
  FileText text = ReadFileText(path.c_str());
  if (text.block.address == nullptr) return "none";
  EXPECT_EQ(text.block.address[text.length], '\0');
  EXPECT_EQ(text.lengthToZero, std::strlen(text.block.address));
  std::string copy(text.block.address, text.length);
  ReleaseBlock(text.block);
  return copy;
}

void ExpectUnreadable(const std::string& path) {
  std::size_t size = 77;
  EXPECT_FALSE(OpenRegularFile(path.c_str(), size)) << path;
  EXPECT_FALSE(ReadFileBytes(path.c_str())) << path;
  EXPECT_EQ(TextOf(path), "none") << path;
}

// The lowest number that a new descriptor gets: a descriptor left open raises it.
int NextDescriptor() {
  const int descriptor = dup(STDERR_FILENO);
  close(descriptor);
  return descriptor;
}

void MakeSparseFile(const std::string& path, std::int64_t size) {
  std::ofstream(path).close();
  ASSERT_EQ(truncate(path.c_str(), size), 0);
}

}  // namespace

TEST(Files, AFileIsReadByteForByte) {
  const TemporaryFolder folder;
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{4095}, kPiece - 1,
                                 kPiece, kPiece + 1, 5 * kPiece + 17}) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 31 + i / 251);
    const std::string path = folder.Write("file", bytes);
    const ByteBuffer buffer = ReadFileBytes(path.c_str());
    ASSERT_TRUE(buffer);
    EXPECT_TRUE(buffer.view() == bytes) << size;

    for (char& byte : bytes) byte = static_cast<char>(byte & 0x7F);
    folder.Write("file", bytes);
    EXPECT_TRUE(TextOf(path) == bytes) << size;
  }
}

TEST(Files, AMissingFileIsUnreadable) {
  const TemporaryFolder folder;
  ExpectUnreadable(folder.PathOf("missing"));
  ExpectUnreadable(folder.PathOf("missing/missing"));
  ExpectUnreadable("");
  ExpectUnreadable(folder.PathOf(std::string(5000, 'x')));
}

TEST(Files, AFolderIsUnreadable) {
  const TemporaryFolder folder;
  ExpectUnreadable(folder.path());
}

TEST(Files, AFifoIsUnreadableAndDoesNotHang) {
  const TemporaryFolder folder;
  const std::string path = folder.PathOf("fifo");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  alarm(20);  // a blocking open would wait for a writer for ever
  ExpectUnreadable(path);
  alarm(0);
}

TEST(Files, ADeviceIsUnreadable) {
  ExpectUnreadable("/dev/null");
  ExpectUnreadable("/dev/zero");
}

TEST(Files, ASocketIsUnreadable) {
  const TemporaryFolder folder;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = folder.PathOf("socket");
  ASSERT_LT(path.size(), sizeof address.sun_path);
  std::memcpy(address.sun_path, path.c_str(), path.size());
  const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ExpectUnreadable(path);
  close(descriptor);
}

TEST(Files, AFileWithoutReadPermissionIsUnreadable) {
  const TemporaryFolder folder;
  ASSERT_EQ(chmod(folder.path().c_str(), 0755), 0);
  const std::string path = folder.Write("file", "<a/>");
  ASSERT_EQ(chmod(path.c_str(), 0), 0);
  const bool isRoot = geteuid() == 0;  // whom permissions do not stop
  if (isRoot) {
    ASSERT_EQ(seteuid(65534), 0);
  }
  ExpectUnreadable(path);
  if (isRoot) {
    ASSERT_EQ(seteuid(0), 0);
  }
}

TEST(Files, LinksToFilesAreFollowed) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink(folder.Write("file", "text"), folder.PathOf("link"));
  EXPECT_EQ(TextOf(folder.PathOf("link")), "text");
  std::filesystem::create_symlink(folder.PathOf("missing"), folder.PathOf("dangling"));
  ExpectUnreadable(folder.PathOf("dangling"));
  std::filesystem::create_symlink(folder.PathOf("circle"), folder.PathOf("circle"));
  ExpectUnreadable(folder.PathOf("circle"));
}

TEST(Files, AFileAboveTwoGigabytesMinusOneMegabyteIsUnreadable) {
  static_assert(kLargestFile == 2147483648 - 1048576);
  const TemporaryFolder folder;
  const std::string path = folder.PathOf("file");
  MakeSparseFile(path, kLargestFile + 1);
  ExpectUnreadable(path);
  MakeSparseFile(path, std::int64_t{5} << 30);
  ExpectUnreadable(path);
  MakeSparseFile(path, kLargestFile);
  std::size_t size = 0;
  EXPECT_TRUE(OpenRegularFile(path.c_str(), size));
  EXPECT_EQ(size, static_cast<std::size_t>(kLargestFile));
}

TEST(Files, DescriptorsAreCloseOnExecAndNonBlocking) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("file", "text");
  std::size_t size = 0;
  const FileDescriptor file = OpenRegularFile(path.c_str(), size);
  ASSERT_TRUE(file);
  EXPECT_EQ(size, 4u);
  EXPECT_NE(fcntl(file.get(), F_GETFD) & FD_CLOEXEC, 0);
  EXPECT_NE(fcntl(file.get(), F_GETFL) & O_NONBLOCK, 0);
}

TEST(Files, NoDescriptorStaysOpen) {
  const TemporaryFolder folder;
  const std::string good = folder.Write("good", "text");
  const std::string bad = folder.Write("bad", "\xFF\xFF\xFF\xFF\xFF");
  const int before = NextDescriptor();
  EXPECT_EQ(TextOf(good), "text");
  EXPECT_EQ(TextOf(bad), "none");
  EXPECT_TRUE(ReadFileBytes(good.c_str()));
  ExpectUnreadable(folder.path());
  ExpectUnreadable("/dev/null");
  EXPECT_EQ(NextDescriptor(), before);
}

TEST(Files, AMovedDescriptorIsClosedOnce) {
  const int before = NextDescriptor();
  {
    FileDescriptor first(dup(STDERR_FILENO));
    const FileDescriptor second = std::move(first);
    EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): that is the question
    EXPECT_EQ(second.get(), before);
  }
  EXPECT_EQ(NextDescriptor(), before);
}

TEST(Files, ExhaustedMemoryMakesAFileUnreadable) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("file", "text");
  const int before = NextDescriptor();
  for (int successes = 0; successes < 2; ++successes) {
    faults::FailAfter(successes, true);
    EXPECT_FALSE(ReadFileBytes(path.c_str()));
    faults::Stop();
  }
  faults::FailAfter(0, true);
  EXPECT_EQ(TextOf(path), "none");
  faults::Stop();
  EXPECT_EQ(NextDescriptor(), before);
}

TEST(FileText, ZeroBytesAndAByteOrderMarkStayAndCount) {
  const TemporaryFolder folder;
  const std::string text("\xEF\xBB\xBF<a>\0</a>", 11);
  EXPECT_EQ(TextOf(folder.Write("file", text)), text);
}

TEST(FileText, TheFirstZeroByteIsFoundWhereverItStands) {
  const TemporaryFolder folder;
  for (const std::size_t place : {std::size_t{0}, std::size_t{1}, kPiece - 1, kPiece, kPiece + 1,
                                  2 * kPiece - 1, 2 * kPiece}) {
    for (const std::size_t behind : {std::size_t{0}, std::size_t{1}, kPiece}) {
      std::string text = std::string(place, 'x') + '\0' + std::string(behind, 'y');
      ASSERT_TRUE(TextOf(folder.Write("file", text)) == text) << place << ' ' << behind;
      text += '\0';
      ASSERT_TRUE(TextOf(folder.Write("file", text)) == text) << place << ' ' << behind;
    }
  }
}

TEST(FileText, AZeroByteIsFoundBehindACharacterAcrossPieces) {
  const TemporaryFolder folder;
  for (std::size_t before = kPiece - 4; before <= kPiece; ++before) {
    const std::string text = std::string(before, 'x') + "\xF0\x9F\x98\x80" + std::string("\0yz", 3);
    ASSERT_TRUE(TextOf(folder.Write("file", text)) == text) << before;
  }
}

TEST(FileText, TextThatIsNotUtf8IsUnreadableWhereverThePiecesMeet) {
  const TemporaryFolder folder;
  const std::string malformed[] = {
      "\x80",              // a lone continuation byte
      "\xC3",              // a missing one
      "\xE2\x82",          // the last of two missing
      "\xF0\x9F\x98",      // the last of three missing
      "\xC0\xAF",          // overlong forms
      "\xE0\x9F\xBF",      //
      "\xF0\x8F\xBF\xBF",  //
      "\xED\xA0\x80",      // a surrogate
      "\xF4\x90\x80\x80",  // above U+10FFFF
      "\xF8\x88\x80\x80\x80",
      "\xFF",
  };
  for (const std::string& sequence : malformed) {
    for (std::size_t before = kPiece - 6; before <= kPiece + 2; ++before) {
      const std::string text = std::string(before, 'x') + sequence + std::string(40, 'y');
      ASSERT_EQ(TextOf(folder.Write("file", text)), "none")
          << testing::PrintToString(sequence) << " at " << before;
    }
  }
}

TEST(FileText, CharactersMayStandAcrossThePlaceWherePiecesMeet) {
  const TemporaryFolder folder;
  for (const std::string character : {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"}) {
    for (std::size_t before = kPiece - 5; before <= kPiece + 1; ++before) {
      const std::string text = std::string(before, 'x') + character + std::string(40, 'y');
      ASSERT_TRUE(TextOf(folder.Write("file", text)) == text) << character << " at " << before;
    }
  }
}

TEST(FileText, ATextThatEndsInsideACharacterIsUnreadable) {
  const TemporaryFolder folder;
  const std::string character = "\xF0\x9F\x98\x80";
  for (const std::size_t before : {std::size_t{0}, kPiece - 2, kPiece - 1, kPiece, 2 * kPiece}) {
    for (std::size_t kept = 1; kept < character.size(); ++kept) {
      const std::string text = std::string(before, 'x') + character.substr(0, kept);
      ASSERT_EQ(TextOf(folder.Write("file", text)), "none") << kept << " behind " << before;
    }
  }
}
