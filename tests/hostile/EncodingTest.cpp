// Files that are no UTF-8 text, or an odd one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/hostile/HostileHome.h"
#include "tests/support/LibraryTexts.h"

using namespace tavrel::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string LibraryNaming(std::string_view name) {
  return LibraryText({Track(1, TextPair("Name", name)), {}});
}

void ExpectRefused(const Outcome& outcome, const std::string& what) {
  EXPECT_FALSE(outcome.loaded) << what;
  EXPECT_THAT(outcome.log, ElementsAre("Open iTunes Library file error!")) << what;
  EXPECT_THAT(outcome.playlists, IsEmpty()) << what;
  EXPECT_THAT(outcome.songs, IsEmpty()) << what;
}

// The same characters in 16 bits each. The text is ASCII.
std::string InUtf16(std::string_view text, bool bigEndian) {
  std::string wide;
  for (const char c : text) {
    if (bigEndian) wide += '\0';
    wide += c;
    if (!bigEndian) wide += '\0';
  }
  return wide;
}

const std::string kNoUtf8[] = {
    "\x80",
    "\xBF",  // continuation bytes alone
    "\xC3",
    "\xE3\x81",
    "\xF0\x9F\x8E",  // characters cut short
    "\xC3(",
    "\xE3\x81(",
    "\xF0\x9F\x8E(",  // and continued wrongly
    "\xC0\x80",
    "\xC1\xBF",
    "\xE0\x80\xAF",
    "\xE0\x9F\xBF",
    "\xF0\x80\x80\xAF",  // overlong forms
    "\xF0\x8F\xBF\xBF",
    "\xED\xA0\x80",
    "\xED\xBF\xBF",
    "\xED\xA0\xBD\xED\xB0\x80",  // surrogates
    "\xF4\x90\x80\x80",
    "\xF5\x80\x80\x80",
    "\xF8\x88\x80\x80\x80",
    "\xFE",
    "\xFF",  // out of range
    "\xC3\xA9\xA9",
    "caf\xE9",
};

const std::string kUtf8[] = {
    "\x7F",         "\xC2\x80",         "\xDF\xBF",
    "\xE0\xA0\x80", "\xED\x9F\xBF",     "\xEE\x80\x80",
    "\xEF\xBF\xBD", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF",
    "\xEF\xBF\xBE", "\xF0\x9F\xBF\xBF", "\xEF\xB7\x90",  // noncharacters are text
};

}  // namespace

TEST(HostileEncoding, NotUtf8AnywhereIsRefused) {
  const HostileHome home;
  for (const std::string& bytes : kNoUtf8) {
    const std::string shown = testing::PrintToString(bytes);
    ExpectRefused(home.Load(LibraryNaming("a" + bytes + "b")), shown);
    ExpectRefused(home.Load(bytes + LibraryNaming("a")), shown + " at the start");
    ExpectRefused(home.Load(LibraryNaming("a") + bytes), shown + " at the end");
  }
}

TEST(HostileEncoding, RareUtf8IsRead) {
  const HostileHome home;
  for (const std::string& bytes : kUtf8) {
    EXPECT_THAT(home.Load(LibraryNaming("a" + bytes + "b")).songs, ElementsAre("a" + bytes + "b"));
  }
}

TEST(HostileEncoding, CharactersAcrossTheEdgesOfReadingAreRead) {
  const HostileHome home;
  const std::string character = "\xF0\x9F\x8E\xB5";
  const std::size_t before = LibraryNaming("").find("</string>\n\t\t</dict>");
  ASSERT_NE(before, std::string::npos);
  for (const std::size_t edge : {std::size_t{256} << 10, std::size_t{512} << 10}) {
    for (std::size_t shift = 0; shift <= 4; ++shift) {
      const std::string name = std::string(edge - shift - before, 'x') + character;
      EXPECT_THAT(home.Load(LibraryNaming(name)).songs, ElementsAre(name));
      const std::string cut = name.substr(0, name.size() - 1);
      ExpectRefused(home.Load(LibraryNaming(cut)), "a character cut short at an edge");
    }
  }
}

TEST(HostileEncoding, ByteOrderMarkIsReadOver) {
  const HostileHome home;
  const Outcome outcome = home.Load("\xEF\xBB\xBF" + SmallLibraryText());
  EXPECT_TRUE(outcome.loaded);
  EXPECT_EQ(outcome.songs, home.Load(SmallLibraryText()).songs);
}

TEST(HostileEncoding, Utf16IsRefused) {
  const HostileHome home;
  ExpectRefused(home.Load("\xFF\xFE" + InUtf16(LibraryNaming("x"), false)), "little-endian");
  ExpectRefused(home.Load("\xFE\xFF" + InUtf16(LibraryNaming("x"), true)), "big-endian");
  // Without a mark its bytes are UTF-8, and its first zero byte ends the text.
  ExpectRefused(home.Load(InUtf16(LibraryNaming("x"), false)), "little-endian without a mark");
  ExpectRefused(home.Load(InUtf16(LibraryNaming("x"), true)), "big-endian without a mark");
}

TEST(HostileEncoding, Utf32IsRefused) {
  const HostileHome home;
  ExpectRefused(home.Load(std::string("\xFF\xFE\0\0<\0\0\0p\0\0\0", 12)), "UTF-32");
  ExpectRefused(home.Load(std::string("\0\0\xFE\xFF\0\0\0<", 8)), "UTF-32 big-endian");
}

TEST(HostileEncoding, ZeroByteEndsTheText) {
  const HostileHome home;
  const std::string text = SmallLibraryText();
  ExpectRefused(home.Load(std::string(1, '\0') + text), "zero byte first");
  ExpectRefused(home.Load(std::string(4096, '\0')), "zero bytes only");
  for (const std::size_t at : {text.find("<key>105"), text.find("Movies"), text.size() - 3}) {
    std::string zeroed = text;
    zeroed[at] = '\0';
    const Outcome expected = home.Load(text.substr(0, at));
    const Outcome outcome = home.Load(zeroed);
    EXPECT_TRUE(outcome.loaded);
    EXPECT_EQ(outcome.songs, expected.songs);
    EXPECT_EQ(outcome.playlists, expected.playlists);
  }
  EXPECT_THAT(home.Load(text + std::string(100, '\0')).songs, testing::SizeIs(5));
}

TEST(HostileEncoding, NotUtf8BehindAZeroByteIsRefusedAllTheSame) {
  const HostileHome home;
  ExpectRefused(home.Load(SmallLibraryText() + std::string("\0\xFF", 2)), "behind a zero byte");
}

TEST(HostileEncoding, OtherFilesOfTheSameFolderAreRefused) {
  const HostileHome home;
  ExpectRefused(home.Load(std::string("bplist00\xD1\x01\x02\x53\x61", 13)), "binary property list");
  ExpectRefused(home.Load(std::string("hdfm\0\0\0\x90\0\0\x10", 11)), "library database");
  ExpectRefused(home.Load("\x1F\x8B\x08"), "gzip");
  ExpectRefused(home.Load("{\"Tracks\": []}"), "JSON");
}
