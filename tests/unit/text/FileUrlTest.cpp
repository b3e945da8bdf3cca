#include <gtest/gtest.h>

#include <string>

#include "tests/support/Random.h"
#include "text/FileUrl.h"

using tavrel::text::FileUrlOfPath;
using tavrel::text::IsFileUrl;
using tavrel::text::PathOfFileUrl;

TEST(FileUrl, OfAPlainPathIsTheBarePathBehindTheScheme) {
  EXPECT_EQ(FileUrlOfPath("/Users/x/Music/A-b_c.d~1.mp3"), "file:///Users/x/Music/A-b_c.d~1.mp3");
  EXPECT_EQ(FileUrlOfPath("/"), "file:///");
}

TEST(FileUrl, EscapesWhatMeansSomethingInAUrl) {
  EXPECT_EQ(FileUrlOfPath("/a b/100%#1?x;y"), "file:///a%20b/100%25%231%3Fx%3By");
}

TEST(FileUrl, EscapesTheBytesOfNonAsciiCharacters) {
  EXPECT_EQ(FileUrlOfPath("/caf\xC3\xA9"), "file:///caf%C3%A9");
  EXPECT_EQ(FileUrlOfPath("/caf\xE9"), "file:///caf%E9");
}

TEST(FileUrl, EveryByteOfAPathComesBack) {
  for (int byte = 1; byte < 256; ++byte) {
    for (const std::string prefix : {"/", "/a", "/a/"}) {
      const std::string path = prefix + static_cast<char>(byte) + "z";
      ASSERT_EQ(PathOfFileUrl(FileUrlOfPath(path)), path) << byte;
    }
  }
}

TEST(FileUrl, RandomPathsComeBackByteForByte) {
  tavrel::test::Random random(7);
  for (int round = 0; round < 20000; ++round) {
    std::string path = random.Bytes(1 + random.Below(60));
    for (char& byte : path) byte = byte == '\0' ? '/' : byte;
    path[0] = '/';
    ASSERT_EQ(PathOfFileUrl(FileUrlOfPath(path)), path) << testing::PrintToString(path);
  }
}

TEST(FileUrl, SlashesComeBackAsTheyStood) {
  for (const std::string path : {"//", "//a//b///", "/a/", "/a/../b/./c"}) {
    EXPECT_EQ(PathOfFileUrl(FileUrlOfPath(path)), path);
  }
}

TEST(FileUrl, AVeryLongPathComesBack) {
  const std::string path = "/" + std::string(100000, '%');
  EXPECT_EQ(PathOfFileUrl(FileUrlOfPath(path)), path);
}

TEST(FileUrl, HasNoHostOrThatOfThisMachine) {
  EXPECT_EQ(PathOfFileUrl("file:///a/b"), "/a/b");
  EXPECT_EQ(PathOfFileUrl("file:/a/b"), "/a/b");
  EXPECT_EQ(PathOfFileUrl("file://localhost/a/b"), "/a/b");
  EXPECT_EQ(PathOfFileUrl("FILE://LocalHost/a/b"), "/a/b");
  EXPECT_EQ(PathOfFileUrl("file://elsewhere/a/b"), std::nullopt);
}

TEST(FileUrl, IsToldByItsSchemeInAnyCase) {
  for (const char* url : {"file:///a", "file:", "FILE:/a", "File:a"})
    EXPECT_TRUE(IsFileUrl(url)) << url;
  for (const char* url :
       {"", "file", "ile:/a", "files:/a", "file /a", "http://file:", " file:/a", "xfile:"}) {
    EXPECT_FALSE(IsFileUrl(url)) << url;
  }
}

TEST(FileUrl, OfAnotherSchemeNamesNoFile) {
  EXPECT_EQ(PathOfFileUrl("http://localhost/a"), std::nullopt);
  EXPECT_EQ(PathOfFileUrl("/a/b"), std::nullopt);
  EXPECT_EQ(PathOfFileUrl("files:///a"), std::nullopt);
  EXPECT_EQ(PathOfFileUrl(""), std::nullopt);
}

TEST(FileUrl, ThatIsMalformedOrHidesAZeroByteNamesNoFile) {
  EXPECT_EQ(PathOfFileUrl("file:///a b"), std::nullopt);
  EXPECT_EQ(PathOfFileUrl("file:///a%2"), std::nullopt);
  EXPECT_EQ(PathOfFileUrl("file:///a%G0"), std::nullopt);
  EXPECT_EQ(PathOfFileUrl("file:///a%00b"), std::nullopt);
}

TEST(FileUrl, QueryAndFragmentAreNotPartOfThePath) {
  EXPECT_EQ(PathOfFileUrl("file:///a?b#c"), "/a");
  EXPECT_EQ(PathOfFileUrl("file:///a%3Fb%23c"), "/a?b#c");
}
