// The quick decoder of ordinary URLs gives what the plain one gives, or leaves the URL to it.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/GuardedPages.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"
#include "text/FileUrl.h"
#include "text/OrdinaryUrl.h"

using tavrel::test::Random;
using tavrel::text::PathOfOrdinaryName;
using tavrel::text::PathOfOrdinaryUrl;
using tavrel::text::PathOfUrl;

namespace {

std::optional<std::string> Quick(const std::string& url) {
  std::string path(url.size(), '?');
  const std::optional<std::size_t> length = PathOfOrdinaryUrl(url.c_str(), path.data());
  if (!length) return std::nullopt;
  EXPECT_LE(*length, url.size());
  return path.substr(0, *length);
}

// The same in two steps, the folder first.
std::optional<std::string> QuickByFolder(const std::string& url) {
  const std::size_t name = url.rfind('/') + 1;
  std::string path(url.size() + 1, '?');
  const auto folder = PathOfOrdinaryUrl(url.substr(0, name).c_str(), path.data());
  if (!folder) return std::nullopt;
  const auto length = PathOfOrdinaryName(url.c_str() + name, path.data(), *folder + 1);
  return length ? std::optional(path.substr(0, *length)) : std::nullopt;
}

// Whether the quick decoder took it; the same path then.
bool IsTakenAsThePlainOneTakesIt(const std::string& url) {
  const std::optional<std::string> path = Quick(url);
  EXPECT_EQ(QuickByFolder(url), path) << url;
  if (path) {
    EXPECT_EQ(path, PathOfUrl(url)) << url;
  }
  return path.has_value();
}

const std::vector<std::string_view> kUrlPieces = {
    "a",   "Z",   "0",   "9",   "/",   "%20", "%25",  "%2F",      "%2f",  "%00", "%7F",
    "%80", "%BF", "%C3", "%A9", "%c3", "%a9", "%E6",  "%97",      "%A5",  "%ED", "%A0",
    "%F4", "%90", "%F0", "%9F", "%",   "%2",  "%G0",  "%0G",      "?",    "#",   " ",
    ";",   ":",   "@",   "&",   "=",   "+",   "$",    ",",        "-",    "_",   ".",
    "!",   "~",   "*",   "'",   "(",   ")",   "\"",   "<",        ">",    "[",   "]",
    "\\",  "^",   "`",   "{",   "|",   "}",   "\x7F", "\xC3\xA9", "\x01", "//"};
const std::vector<std::string_view> kOrdinaryPieces = {
    "a", "Z", "0", "/", "%20", "%2F", "%C3%A9", "%e6%97%a5", "%25", "(", "'", "."};
const std::vector<std::string_view> kStarts = {"file://localhost/",
                                               "file://localhost/",
                                               "file:///",
                                               "file:///",
                                               "file://localhost",
                                               "file://",
                                               "file://localhosts/",
                                               "FILE://localhost/",
                                               "file:/",
                                               "http://host/",
                                               "",
                                               "file://localhost:80/"};

}  // namespace

TEST(OrdinaryUrl, LocationsOfLibraryFilesAreOrdinary) {
  EXPECT_EQ(Quick("file://localhost/Users/x/A%20B/caf%C3%A9.mp3"), "/Users/x/A B/caf\xC3\xA9.mp3");
  EXPECT_EQ(Quick("file:///Users/x/1-01%20%281%29.mp3"), "/Users/x/1-01 (1).mp3");
  EXPECT_EQ(Quick("file:///a%2541"), "/a%41");
  EXPECT_EQ(Quick("file://localhost/%e6%97%a5"), "/\xE6\x97\xA5");
  EXPECT_EQ(Quick("file:///Music/"), "/Music");
  EXPECT_EQ(Quick("file:///Music//"), "/Music/");
  EXPECT_EQ(Quick("file:///Music%2F"), "/Music");
  EXPECT_EQ(Quick("file:///"), "");
  EXPECT_EQ(Quick("file:////a"), "//a");
}

TEST(OrdinaryUrl, EverythingElseIsLeftToThePlainDecoder) {
  for (const char* url : {"",
                          "/a",
                          "file:/a",
                          "file://",
                          "file://localhost",
                          "FILE:///a",
                          "file://Localhost/a",
                          "file://elsewhere/a",
                          "http://localhost/a",
                          "file:///a?b",
                          "file:///a#b",
                          "file:///a b",
                          "file:///a%",
                          "file:///a%2",
                          "file:///a%2G",
                          "file:///a%G2",
                          "file:///a%00",
                          "file:///%C3",
                          "file:///%C3a",
                          "file:///\xC3\xA9",
                          "file:///%ED%A0%80"}) {
    EXPECT_EQ(Quick(url), std::nullopt) << url;
  }
}

TEST(OrdinaryUrl, EveryByteAndEveryEscapeIsTakenAsThePlainOneTakesIt) {
  int taken = 0;
  for (int first = 1; first < 256; ++first) {
    for (int second = 1; second < 256; ++second) {
      const std::string two = {static_cast<char>(first), static_cast<char>(second)};
      taken += IsTakenAsThePlainOneTakesIt("file:///" + two);
      taken += IsTakenAsThePlainOneTakesIt("file:///%" + two + "x");
    }
  }
  // 80 bytes may stand in a path as they are. Escapes are those of 0x01 to 0x7F: 8 first digits,
  // and 22 spellings of 16 second ones.
  EXPECT_EQ(taken, 80 * 80 + 8 * 22 - 1);
}

TEST(OrdinaryUrl, RandomUrlsAreTakenAsThePlainOneTakesThem) {
  Random random(14);
  int taken = 0;
  const int rounds = tavrel::test::Rounds(1000000);
  for (int round = 0; round < rounds; ++round) {
    std::string url(kStarts[random.Below(kStarts.size())]);
    url += random.Text(random.Below(3) == 0 ? kUrlPieces : kOrdinaryPieces, random.Below(12));
    taken += IsTakenAsThePlainOneTakesIt(url);
    if (HasFailure()) return;
  }
  EXPECT_GT(taken, rounds / 10);
}

TEST(OrdinaryUrl, NothingBehindTheUrlIsRead) {
  tavrel::test::GuardedPages pages(100);
  const std::string whole = "file://localhost/a%C3%A9/b%41";
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const std::string url = whole.substr(0, length);
    char path[100];
    const auto taken = PathOfOrdinaryUrl(pages.PlaceAtEnd(url), path);
    EXPECT_EQ(taken.has_value(), Quick(url).has_value()) << url;
    EXPECT_EQ(PathOfOrdinaryUrl(pages.PlaceAtStart(url, '4'), path), taken) << url;
  }
}

TEST(OrdinaryUrl, OneDamagedByteIsTakenAsThePlainOneTakesIt) {
  Random random(15);
  const std::string whole =
      "file://localhost/Users/x/Music/Sigur%20Ro%CC%81s/%E6%97%A5%E6%9C%AC/01%20%26%20(2).m4a";
  ASSERT_TRUE(IsTakenAsThePlainOneTakesIt(whole));
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (int byte = 1; byte < 256; ++byte) {
      std::string url = whole;
      url[at] = static_cast<char>(byte);
      (void)IsTakenAsThePlainOneTakesIt(url);
    }
    (void)IsTakenAsThePlainOneTakesIt(whole.substr(0, at));
    if (HasFailure()) return;
  }
}
