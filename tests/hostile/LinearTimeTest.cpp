// Huge files of a repeated piece: the time to load them, to ask about them and to unload grows with
// their length and no faster. Times are of the processor, not of the clock on the wall.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <ostream>

#include "tests/hostile/HostileHome.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/Sanitizers.h"

using namespace tavrel::test;

namespace {

constexpr std::size_t kSmall = std::size_t{kSanitized ? 128 : 512} << 10;
constexpr std::size_t kGrowth = 8;
// Eight times the input may take 24 times the time: three times what a linear cost would be, and
// far below the 64 times of a quadratic one. What takes less than a blink is not worth a ratio.
constexpr double kMostGrowth = 24;
constexpr double kBlink = 0.2;

struct Family {
  const char* name;
  std::string before;
  std::string piece;
  std::string behind;
};

void PrintTo(const Family& family, std::ostream* stream) {
  *stream << family.name;
}

std::string TextOf(const Family& family, std::size_t bytes) {
  return family.before + Repeated(family.piece, bytes / family.piece.size()) + family.behind;
}

double Seconds(std::clock_t from) {
  return static_cast<double>(std::clock() - from) / CLOCKS_PER_SEC;
}

// Loads the file, and asks for what costs a host something: every count, every name, the first and
// the last song of every list.
double SecondsOfALoad(const TemporaryHome& home) {
  const CapturedStderr log;
  const std::clock_t start = std::clock();
  LoadedLibrary library(home.path());
  SongInfo info = {};
  PlaylistRecord* all = library->openAllSongs();
  library->getSongInfo(all, 0, &info);
  library->getSongInfo(all, library->getSongCount(all) - 1, &info);
  for (std::int32_t group = 0; group < 3; ++group) {
    const std::int32_t count = library->getPlaylistCount(group);
    for (std::int32_t i = 0; i < count; ++i) {
      library->getPlaylistName(group, i, nullptr, 0);
      PlaylistRecord* playlist = library->openPlaylist(group, i);
      library->getSongInfo(playlist, library->getSongCount(playlist) - 1, &info);
    }
  }
  std::int32_t index = 0;
  library.Get<PlaylistRecord* (*)(std::int32_t, std::int32_t*)>("GetPlaylistByTrackId")(-5, &index);
  EXPECT_EQ(library.Unload(), 0);
  return Seconds(start);
}

double BestSeconds(const TemporaryHome& home, const std::string& text, int rounds) {
  home.WriteLibrary(text);
  double best = SecondsOfALoad(home);
  while (--rounds > 0) best = std::min(best, SecondsOfALoad(home));
  return best;
}

const std::string kTop = "<plist><dict>";
const std::string kNameOfOne =
    "<plist><dict><dict><key>1</key><dict><key>Track ID</key><integer>1</integer>"
    "<key>Name</key><string>";
const std::string kNameEnd = "</string></dict></dict></dict></plist>";
const std::string kOneTrack =
    "<plist><dict><dict><key>1</key><dict><k/><i>1</i></dict></dict><array>";

const Family kFamilies[] = {
    {"Nesting", kTop, "<dict>", ""},
    {"NestingClosed", kTop, "<dict>", Repeated("</dict>", 1000)},
    {"OpeningBrackets", "", "<", ""},
    {"ClosingBrackets", kTop, ">", ""},
    {"ClosingTags", kTop, "</a>", ""},
    {"Declarations", "", "<!a>", kTop},
    {"Instructions", "", "<?a?>", kTop},
    {"Whitespace", kTop, " \n\t", "</dict></plist>"},
    {"WhitespaceInATag", "<plist", " ", "/>"},
    {"WhitespaceBehindAText", kNameOfOne, " ", kNameEnd},
    {"TextBetweenEmptyElements", kTop, "text<a/>", "</dict></plist>"},
    {"Attributes", "<plist", " a=\"b\"", "/>"},
    {"AttributesWithoutAValue", "<plist", " a", "/>"},
    {"AttributeValue", "<plist a=\"", "x'", "\"/>"},
    {"AttributeWithoutAnEnd", "<plist a=\"", "x", "/>"},
    {"OpenersInAValue", "<plist a=\"", "<![CDATA[", "]]>\"/>"},
    {"SectionsInAValue", "<plist a=\"", "<![CDATA[]]>", "\"/>"},
    {"FullSectionsInAValue", "<plist a=\"", "<![CDATA[x>y]]>z", "\"/>"},
    {"JoiningSectionsInAValue", "<plist a=\"", "<![CDA<![CDATA[]]>TA[]]>", "\"/>"},
    {"Sections", kNameOfOne, "<![CDATA[]]>", kNameEnd},
    {"FullSections", kNameOfOne, "<![CDATA[<x>&#38;]]>y", kNameEnd},
    {"SectionsWithoutATagBehindThem", kNameOfOne, "<![CDATA[]]>", ""},
    {"SectionOpeners", kNameOfOne, "<![CDATA[", ""},
    {"SectionOpenersInOneSection", kNameOfOne, "<![CDATA[", "]]>" + kNameEnd},
    {"SectionEnds", kNameOfOne, "]]>", kNameEnd},
    {"Comments", kNameOfOne, "<!---->", kNameEnd},
    {"CommentsBetweenElements", kTop, "<!-- --><a/>", "</dict></plist>"},
    {"CommentOpeners", kNameOfOne, "<!--", ""},
    {"CommentOpenersInOneComment", kNameOfOne, "<!--", "-->" + kNameEnd},
    {"References", kNameOfOne, "&amp;", kNameEnd},
    {"NumericReferences", kNameOfOne, "&#38;", kNameEnd},
    {"LongNumericReference", kNameOfOne + "&#", "9", ";" + kNameEnd},
    {"LongTextInANumericReference", kNameOfOne + "&#65", "&#", ";" + kNameEnd},
    {"AmpersandsWithoutAnEnd", kNameOfOne, "&", kNameEnd},
    {"AmpersandsBeforeOneEnd", kNameOfOne, "&", ";" + kNameEnd},
    {"NumericReferencesBeforeOneEnd", kNameOfOne, "&#1", ";" + kNameEnd},
    {"UnknownReferences", kNameOfOne, "&x;", kNameEnd},
    {"LongName", kNameOfOne, "n", kNameEnd},
    {"LongLocation",
     "<plist><dict><dict><key>1</key><dict><k/><i>1</i><key>Location</key><string>file:///", "%41/",
     kNameEnd},
    {"LongNumber", "<plist><dict><dict><k/><dict><k/><i>", "1",
     "</i></dict></dict></dict></plist>"},
    {"LongTagName", kTop + "<", "n", "/></dict></plist>"},
    {"Tracks", kTop + "<dict>", "<k/><d><k/><i>1</i></d>", "</dict></dict></plist>"},
    {"TracksWithoutProperties", kTop + "<dict>", "<k/><d/>", "</dict></dict></plist>"},
    {"PropertiesOfATrack", "<plist><dict><dict><k/><dict>", "<a/><b/>",
     "</dict></dict></dict></plist>"},
    {"KeysLikeTheOnesSought", "<plist><dict><dict><k/><dict>", "<key>Nam</key><a/>",
     "</dict></dict></dict></plist>"},
    {"ChildrenOfTheTopLevel", kTop, "<key>a</key><true/>", "</dict></plist>"},
    {"Playlists", kOneTrack, "<dict/>", "</array></dict></plist>"},
    {"NamedPlaylists", kOneTrack, "<dict><key>Name</key><string>n</string></dict>",
     "</array></dict></plist>"},
    {"HiddenPlaylists", kOneTrack, "<d><key>Visible</key><false/></d>", "</array></dict></plist>"},
    {"UnknownItems", kOneTrack + "<dict><array>", "<d><k/><i>9</i></d>",
     "</array></dict></array></dict></plist>"},
    {"KnownItems", kOneTrack + "<dict><array>", "<d><k/><i>1</i></d>",
     "</array></dict></array></dict></plist>"},
    {"EmptyItems", kOneTrack + "<dict><array>", "<d/>", "</array></dict></array></dict></plist>"},
    {"LongPlaylistName", kOneTrack + "<dict><key>Name</key><string>", "&#38;",
     "</string></dict></array></dict></plist>"},
};

class HostileFamily : public testing::TestWithParam<Family> {};

}  // namespace

TEST_P(HostileFamily, TakesTimeLinearInItsLength) {
  const TemporaryHome home;
  const double small = BestSeconds(home, TextOf(GetParam(), kSmall), 4);
  double large = BestSeconds(home, TextOf(GetParam(), kSmall * kGrowth), 1);
  // A busy machine may be in the way of one run, but hardly of all.
  for (int more = 0; more < 5 && large > kBlink && large / small >= kMostGrowth; ++more) {
    large = std::min(large, BestSeconds(home, TextOf(GetParam(), kSmall * kGrowth), 1));
  }
  // AddressSanitizer looks at the whole rest of a text before each search in it: no ratio then.
  if (large > kBlink && !kSanitized) {
    EXPECT_LT(large / small, kMostGrowth) << small << " s, then " << large << " s";
  }
}

INSTANTIATE_TEST_SUITE_P(Repeated, HostileFamily, testing::ValuesIn(kFamilies),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

// ---- What comes out of some of them
// ---------------------------------------------------------------

TEST(HostileSize, NameOfTwentyMegabytesIsDeliveredWhole) {
  const TemporaryHome home;
  const std::size_t bytes = std::size_t{20} << 20;
  home.WriteLibrary(kNameOfOne + std::string(bytes, 'n') + kNameEnd);
  const LoadedLibrary library(home.path());
  SongInfo info = {};
  const auto size = static_cast<std::int32_t>(bytes + 1);
  EXPECT_EQ(library->getSongInfo(library->openAllSongs(), 0, &info), 96 + size);
  ASSERT_EQ(info.nameSize, size);
  std::string buffer(bytes + 2, '#');
  info.name = buffer.data();
  library->getSongInfo(library->openAllSongs(), 0, &info);
  EXPECT_TRUE(buffer == std::string(bytes, 'n') + '\0' + '#');
}

TEST(HostileSize, MillionUnknownTracksGiveAnEmptyPlaylist) {
  const TemporaryHome home;
  home.WriteLibrary(kOneTrack + "<dict><array>" + Repeated("<d><k/><i>2</i></d>", 1000000) +
                    "</array></dict></array></dict></plist>");
  const LoadedLibrary library(home.path());
  ASSERT_EQ(library->getPlaylistCount(2), 1);
  EXPECT_EQ(library->getSongCount(library->openPlaylist(2, 0)), 0);
}

TEST(HostileSize, PlaylistMayHoldATrackAMillionTimes) {
  const TemporaryHome home;
  home.WriteLibrary(kOneTrack + "<dict><array>" + Repeated("<d><k/><i>1</i></d>", 1000000) +
                    "</array></dict></array></dict></plist>");
  const LoadedLibrary library(home.path());
  PlaylistRecord* playlist = library->openPlaylist(2, 0);
  ASSERT_EQ(library->getSongCount(playlist), 1000000);
  SongInfo info = {};
  EXPECT_EQ(library->getSongInfo(playlist, 999999, &info), 96);
}

TEST(HostileSize, ErrorInATextOfMegabytesIsLoggedOnce) {
  const TemporaryHome home;
  home.WriteLibrary(kNameOfOne + Repeated("&", 1 << 20) + kNameEnd);
  const LoadedLibrary library(home.path());
  SongInfo info = {};
  const CapturedStderr log;
  for (int i = 0; i < 3; ++i) library->getSongInfo(library->openAllSongs(), 0, &info);
  EXPECT_EQ(info.nameSize, (1 << 20) + 1);
  EXPECT_THAT(log.Messages(), testing::SizeIs(1));
}
