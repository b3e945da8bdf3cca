#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "system/FolderListing.h"
#include "tests/support/TemporaryFolder.h"

namespace tavrel::system {
namespace {

using test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;

// The lowest descriptor that is free.
int NextDescriptor() {
  const int descriptor = dup(STDERR_FILENO);
  close(descriptor);
  return descriptor;
}

TEST(PathIn, PutsOneSlashBetween) {
  EXPECT_EQ(PathIn("/a", "b"), "/a/b");
  EXPECT_EQ(PathIn("/a/", "b"), "/a/b");
  EXPECT_EQ(PathIn("/", "b"), "/b");
}

TEST(NamesIn, GivesEveryEntryInTheByteOrderOfTheNames) {
  const TemporaryFolder folder;
  for (const char* name : {"b", "a", "B", "\xFF", "\xC3\xA9", "a.b", "a b", ".hidden", "..."}) {
    folder.Write(name, "");
  }
  folder.Write("sub/inside", "");
  symlink("nowhere", folder.PathOf("link").c_str());
  EXPECT_THAT(NamesIn(folder.path()), ElementsAre("...", ".hidden", "B", "a", "a b", "a.b", "b",
                                                  "link", "sub", "\xC3\xA9", "\xFF"));
}

TEST(NamesIn, IsEmptyForAnEmptyMissingOrUnreadableFolder) {
  const TemporaryFolder folder;
  EXPECT_THAT(NamesIn(folder.path()), IsEmpty());
  EXPECT_THAT(NamesIn(folder.PathOf("missing")), IsEmpty());
  EXPECT_THAT(NamesIn(folder.Write("file", "x")), IsEmpty());
  EXPECT_THAT(NamesIn(folder.PathOf(std::string(5000, 'x'))), IsEmpty());
  EXPECT_THAT(NamesIn(""), IsEmpty());
}

TEST(NamesIn, FollowsALinkToTheFolder) {
  const TemporaryFolder folder;
  folder.Write("real/file", "");
  symlink("real", folder.PathOf("link").c_str());
  EXPECT_THAT(NamesIn(folder.PathOf("link")), ElementsAre("file"));
}

TEST(NamesIn, LeavesNothingOpen) {
  const TemporaryFolder folder;
  folder.Write("sub/file", "");
  const int before = NextDescriptor();
  (void)NamesIn(folder.path());
  (void)NamesIn(folder.PathOf("missing"));
  EXPECT_EQ(NextDescriptor(), before);
}

TEST(KindOfEntry, TellsFoldersFromEverythingElse) {
  const TemporaryFolder folder;
  folder.Write("sub/file", "");
  mkfifo(folder.PathOf("fifo").c_str(), 0600);
  EXPECT_EQ(KindOfEntry(folder.PathOf("sub")), EntryKind::Folder);
  EXPECT_EQ(KindOfEntry(folder.PathOf("sub/file")), EntryKind::Other);
  EXPECT_EQ(KindOfEntry(folder.PathOf("fifo")), EntryKind::Other);
  EXPECT_EQ(KindOfEntry(folder.PathOf("missing")), EntryKind::Unreadable);
}

TEST(KindOfEntry, TakesALinkForWhatItLeadsTo) {
  const TemporaryFolder folder;
  folder.Write("sub/file", "");
  symlink("sub", folder.PathOf("to-folder").c_str());
  symlink("sub/file", folder.PathOf("to-file").c_str());
  symlink("missing", folder.PathOf("broken").c_str());
  symlink("loop", folder.PathOf("loop").c_str());
  EXPECT_EQ(KindOfEntry(folder.PathOf("to-folder")), EntryKind::Folder);
  EXPECT_EQ(KindOfEntry(folder.PathOf("to-file")), EntryKind::Other);
  EXPECT_EQ(KindOfEntry(folder.PathOf("broken")), EntryKind::Unreadable);
  EXPECT_EQ(KindOfEntry(folder.PathOf("loop")), EntryKind::Unreadable);
}

}  // namespace
}  // namespace tavrel::system
