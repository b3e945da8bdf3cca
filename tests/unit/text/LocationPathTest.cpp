#include <gtest/gtest.h>

#include <string>

#include "text/FileUrl.h"

using tavrel::text::PathOfUrl;

TEST(PathOfUrl, DecodesTheEscapesOfAFileUrl) {
  EXPECT_EQ(PathOfUrl("file:///Users/x/Music/A%20B.mp3"), "/Users/x/Music/A B.mp3");
  EXPECT_EQ(PathOfUrl("file://localhost/Users/x/caf%C3%A9.mp3"), "/Users/x/caf\xC3\xA9.mp3");
  EXPECT_EQ(PathOfUrl("file:///%e6%97%a5"), "/\xE6\x97\xA5");
  EXPECT_EQ(PathOfUrl("file:///a%2541"), "/a%41");  // decoded once only
  EXPECT_EQ(PathOfUrl("file:///a+b"), "/a+b");
}

TEST(PathOfUrl, TakesAnySchemeAndHostOrNone) {
  EXPECT_EQ(PathOfUrl("http://radio.example:8000/live/stream"), "/live/stream");
  EXPECT_EQ(PathOfUrl("daap://user@host/a"), "/a");
  EXPECT_EQ(PathOfUrl("/a/b"), "/a/b");
  EXPECT_EQ(PathOfUrl("a/b"), "a/b");
  EXPECT_EQ(PathOfUrl("//host/a"), "/a");
  EXPECT_EQ(PathOfUrl("mailto:somebody@example.org"), "somebody@example.org");
  EXPECT_EQ(PathOfUrl("a/b:c"), "a/b:c");
  EXPECT_EQ(PathOfUrl(":a"), ":a");
  EXPECT_EQ(PathOfUrl("http://host:name/a"), "/a");
}

TEST(PathOfUrl, EndsBeforeAQueryOrFragment) {
  EXPECT_EQ(PathOfUrl("http://host/a/b?c=/d#e"), "/a/b");
  EXPECT_EQ(PathOfUrl("file:///a#b?c"), "/a");
  EXPECT_EQ(PathOfUrl("http://host?a/b"), "");
  EXPECT_EQ(PathOfUrl("file:///a;b"), "/a;b");
}

TEST(PathOfUrl, KeepsTwoSlashesAtTheStart) {
  EXPECT_EQ(PathOfUrl("file:////server/share/a.mp3"), "//server/share/a.mp3");
}

TEST(PathOfUrl, DropsOneSlashAtTheEnd) {
  EXPECT_EQ(PathOfUrl("file:///Users/x/"), "/Users/x");
  EXPECT_EQ(PathOfUrl("file:///Users/x//"), "/Users/x/");
  EXPECT_EQ(PathOfUrl("file:///"), "");
}

TEST(PathOfUrl, MayBeEmpty) {
  EXPECT_EQ(PathOfUrl(""), "");
  EXPECT_EQ(PathOfUrl("http://host"), "");
  EXPECT_EQ(PathOfUrl("file:"), "");
}

TEST(PathOfUrl, IsNoneWhenACharacterMayNotStandUnescaped) {
  for (int byte = 0; byte < 256; ++byte) {
    const char character = static_cast<char>(byte);
    constexpr std::string_view kAllowed =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
        "-_.!~*'();/?:@&=+$,#";
    const bool allowed = kAllowed.find(character) != std::string_view::npos;
    EXPECT_EQ(PathOfUrl(std::string("file:///a") + character).has_value(), allowed) << byte;
    EXPECT_EQ(PathOfUrl(std::string("file:///a?b") + character).has_value(), allowed) << byte;
  }
}

TEST(PathOfUrl, IsNoneWhenThereIsASecondNumberSign) {
  EXPECT_EQ(PathOfUrl("file:///a#b"), "/a");
  EXPECT_EQ(PathOfUrl("file:///a#b#c"), std::nullopt);
}

TEST(PathOfUrl, IsNoneWhenAPercentSignLacksTwoHexadecimalDigits) {
  for (const char* ending : {"%", "%2", "%2G", "%G2", "%%41", "%-1", "% 1", "%2/"}) {
    EXPECT_EQ(PathOfUrl(std::string("file:///a") + ending), std::nullopt) << ending;
    EXPECT_EQ(PathOfUrl(std::string("file:///a?") + ending), std::nullopt) << ending;
    EXPECT_EQ(PathOfUrl(std::string("file:///a#") + ending), std::nullopt) << ending;
  }
}

TEST(PathOfUrl, NothingBehindTheUrlIsRead) {
  const std::string_view longer = "file:///a%41";
  EXPECT_EQ(PathOfUrl(longer), "/aA");
  EXPECT_EQ(PathOfUrl(longer.substr(0, longer.size() - 1)), std::nullopt);
  EXPECT_EQ(PathOfUrl(longer.substr(0, longer.size() - 2)), std::nullopt);
  EXPECT_EQ(PathOfUrl(longer.substr(0, longer.size() - 3)), "/a");
}

TEST(PathOfUrl, IsNoneWhenItsEscapesAreNotUtf8OrAZeroByte) {
  for (const char* escape : {"%FF", "%E9", "%C3", "%80", "%C0%AF", "%ED%A0%80", "%F4%90%80%80"}) {
    EXPECT_EQ(PathOfUrl(std::string("file:///a") + escape), std::nullopt) << escape;
  }
  EXPECT_EQ(PathOfUrl("file:///a%00"), std::nullopt);
  EXPECT_EQ(PathOfUrl("file:///%00a"), std::nullopt);
  EXPECT_EQ(PathOfUrl("file:///%C3%A9%EF%BF%BF"), "/\xC3\xA9\xEF\xBF\xBF");
}
