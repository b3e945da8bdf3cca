#include <gtest/gtest.h>

#include "text/PathNames.h"

using tavrel::text::SplitExtension;

namespace {

void ExpectSplit(std::string_view path, std::string_view base, std::string_view extension) {
  EXPECT_EQ(SplitExtension(path).base, base) << path;
  EXPECT_EQ(SplitExtension(path).extension, extension) << path;
}

}  // namespace

TEST(SplitExtension, SplitsAtTheLastDot) {
  ExpectSplit("library.xml", "library", "xml");
  ExpectSplit("library.xml.gz", "library.xml", "gz");
  ExpectSplit("a/b/library.xml", "a/b/library", "xml");
}

TEST(SplitExtension, ADotInAFolderNameDoesNotCount) {
  ExpectSplit("a.gz/library", "a.gz/library", "");
  ExpectSplit("/a.gz/library.xml", "/a.gz/library", "xml");
}

TEST(SplitExtension, WithoutADotThereIsNoExtension) {
  ExpectSplit("library", "library", "");
  ExpectSplit("", "", "");
}

TEST(SplitExtension, NothingBehindTheDotIsAnEmptyExtension) {
  ExpectSplit("library.", "library", "");
}

TEST(SplitExtension, AtTheStartOfANameADotCountsAsWell) {
  ExpectSplit(".gz", "", "gz");
  ExpectSplit("a/.gz", "a/", "gz");
}
