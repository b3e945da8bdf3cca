#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "system/FolderWalk.h"
#include "tests/support/ArtworkHome.h"

namespace tavrel::system {
namespace {

using test::OpenDescriptors;
using test::TemporaryFolder;

std::vector<std::string> Walk(const std::string& folder) {
  std::vector<std::string> paths;
  FolderWalk walk(folder);
  while (const auto path = walk.Next()) paths.emplace_back(*path);
  return paths;
}

using Paths = std::vector<std::string>;

TEST(FolderWalk, ListsFilesAndFoldersByTheBytesOfTheirPaths) {
  const TemporaryFolder folder;
  for (const char* name :
       {"b", "a/x", "a/B/deep", "a-b", "a0", "A", "a/\xC3\xA9", "a/y.d/z", "a/y"}) {
    folder.Write(name, "");
  }
  const Paths expected = {"A",   "a",     "a-b",     "a/B",        "a/B/deep", "a/x",
                          "a/y", "a/y.d", "a/y.d/z", "a/\xC3\xA9", "a0",       "b"};
  EXPECT_EQ(Walk(folder.path()), expected);
  EXPECT_EQ(Walk(folder.path() + "/"), expected);
  EXPECT_TRUE(std::is_sorted(expected.begin(), expected.end()));
}

TEST(FolderWalk, MissingFolderOrFileGivesNothing) {
  const TemporaryFolder folder;
  EXPECT_EQ(Walk(folder.PathOf("missing")), Paths{});
  EXPECT_EQ(Walk(folder.Write("file", "")), Paths{});
  EXPECT_EQ(Walk(folder.PathOf("file")), Paths{});
}

TEST(FolderWalk, FollowsALinkAtTheTopAndNoneBelow) {
  const TemporaryFolder folder;
  folder.Write("real/file", "");
  folder.Write("other/file", "");
  ASSERT_EQ(symlink(folder.PathOf("other").c_str(), folder.PathOf("real/link").c_str()), 0);
  ASSERT_EQ(symlink(".", folder.PathOf("real/circle").c_str()), 0);
  ASSERT_EQ(symlink("nowhere", folder.PathOf("real/broken").c_str()), 0);
  ASSERT_EQ(symlink("real", folder.PathOf("top").c_str()), 0);
  EXPECT_EQ(Walk(folder.PathOf("top")), (Paths{"broken", "circle", "file", "link"}));
}

TEST(FolderWalk, FolderThatCannotBeReadIsListedAndSurvived) {
  const TemporaryFolder folder;
  folder.Write("a/file", "");
  folder.Write("closed/file", "");
  folder.Write("z", "");
  ASSERT_EQ(chmod(folder.path().c_str(), 0755), 0);
  ASSERT_EQ(chmod(folder.PathOf("closed").c_str(), 0), 0);
  const uid_t user = geteuid();
  if (user == 0) {
    ASSERT_EQ(seteuid(65534), 0);  // root may read every folder
  }
  const Paths paths = Walk(folder.path());
  if (user == 0) {
    ASSERT_EQ(seteuid(user), 0);
  }
  chmod(folder.PathOf("closed").c_str(), 0700);
  EXPECT_EQ(paths, (Paths{"a", "a/file", "closed", "z"}));
}

TEST(FolderWalk, FolderThatGoesAwayMeanwhileIsSurvived) {
  const TemporaryFolder folder;
  folder.Write("a/file", "");
  folder.Write("z", "");
  FolderWalk walk(folder.path());
  EXPECT_EQ(walk.Next(), "a");
  std::filesystem::remove_all(folder.PathOf("a"));
  EXPECT_EQ(walk.Next(), "z");
  EXPECT_EQ(walk.Next(), std::nullopt);
  EXPECT_EQ(walk.Next(), std::nullopt);
}

TEST(FolderWalk, KeepsNoDescriptorOpen) {
  const TemporaryFolder folder;
  folder.Write("a/b/c/d/e", "");
  const std::size_t before = OpenDescriptors();
  FolderWalk walk(folder.path());
  do {
    EXPECT_EQ(OpenDescriptors(), before);
  } while (walk.Next());
}

// Deeper than paths can be: made and removed step by step, from inside.
TEST(FolderWalk, EndsWherePathsBecomeTooLong) {
  const TemporaryFolder folder;
  int at = open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  constexpr int kDepth = 2200;
  for (int i = 0; i < kDepth; ++i) {
    ASSERT_EQ(mkdirat(at, "d", 0700), 0);
    const int next = openat(at, "d", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    close(at);
    at = next;
  }
  const Paths paths = Walk(folder.path());
  EXPECT_GT(paths.size(), 1000U);
  EXPECT_LT(paths.size(), kDepth + 0U);
  for (int i = 0; i < kDepth; ++i) {
    const int above = openat(at, "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    close(at);
    at = above;
    unlinkat(at, "d", AT_REMOVEDIR);
  }
  close(at);
}

}  // namespace
}  // namespace tavrel::system
