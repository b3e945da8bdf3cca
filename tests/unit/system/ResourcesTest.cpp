#include <gtest/gtest.h>

#include <climits>
#include <filesystem>
#include <string>

#include "system/Resources.h"
#include "tests/support/TemporaryFolder.h"

using tavrel::system::PathForResource;
using tavrel::system::SetResourceFolder;
using tavrel::test::TemporaryFolder;

namespace {

class Resources : public testing::Test {
 protected:
  Resources() { SetResourceFolder(folder_.path()); }
  ~Resources() override { SetResourceFolder(""); }

  TemporaryFolder folder_;
};

}  // namespace

TEST_F(Resources, AreFoundByBaseNameAndExtension) {
  const std::string path = folder_.Write("menu.xml", "");
  EXPECT_EQ(PathForResource("menu", "xml"), path);
  EXPECT_EQ(PathForResource("menu", "txt"), std::nullopt);
  EXPECT_EQ(PathForResource("other", "xml"), std::nullopt);
  EXPECT_EQ(PathForResource("menu", ""), std::nullopt);
}

TEST_F(Resources, MayHaveNoExtension) {
  const std::string path = folder_.Write("menu", "");
  EXPECT_EQ(PathForResource("menu", ""), path);
}

TEST_F(Resources, MayHaveSeveralDots) {
  const std::string path = folder_.Write("menu.xml.gz", "");
  EXPECT_EQ(PathForResource("menu.xml", "gz"), path);
}

TEST_F(Resources, WithoutANameThereIsNone) {
  EXPECT_EQ(PathForResource("", ""), std::nullopt);
  const std::string path = folder_.Write(".xml", "");
  EXPECT_EQ(PathForResource("", "xml"), path) << "its name is the extension";
}

TEST_F(Resources, AFolderNameTooLongForTheSystemCountsAsNotSet) {
  folder_.Write("menu.xml", "");
  SetResourceFolder(std::string(100000, 'x'));
  EXPECT_EQ(PathForResource("menu", "xml"), std::nullopt);
}

TEST_F(Resources, AShorterFolderNameReplacesALongerOne) {
  const std::string path = folder_.Write("menu.xml", "");
  SetResourceFolder(folder_.path() + "/a/much/longer/folder/name");
  SetResourceFolder(folder_.path());
  EXPECT_EQ(PathForResource("menu", "xml"), path);
}

#if defined(__linux__)
TEST_F(Resources, StandBesideTheExecutableUnlessAFolderIsSet) {
  const auto executable = std::filesystem::read_symlink("/proc/self/exe");
  const auto resources = executable.parent_path() / "resources";
  const auto file = resources / "platform-resources-test.txt";
  std::filesystem::create_directories(resources);
  std::ofstream(file).close();
  SetResourceFolder("");
  EXPECT_EQ(PathForResource("platform-resources-test", "txt"), file.string());
  SetResourceFolder(std::string(PATH_MAX, 'x'));  // a byte too many
  EXPECT_EQ(PathForResource("platform-resources-test", "txt"), file.string());
  std::filesystem::remove(file);
  EXPECT_EQ(PathForResource("platform-resources-test", "txt"), std::nullopt);
  std::error_code ignored;
  std::filesystem::remove(resources, ignored);  // only when nothing else is in it
}
#endif
