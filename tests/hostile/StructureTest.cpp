// Files whose elements are not those of a library.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/hostile/HostileHome.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/Texts.h"

using namespace tavrel::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct NamedFile {
  const char* defect;
  std::string text;
};

std::string SmallTracks() {
  return "<key>Tracks</key><dict>" + Track(1, TextPair("Name", "one")) + Track(2) + "</dict>";
}

std::string SmallPlaylists() {
  return "<key>Playlists</key><array>" + Playlist(TextPair("Name", "p"), {2, 1}) + "</array>";
}

const NamedFile kWithoutAnElement[] = {
    {"empty", ""},
    {"one blank", " "},
    {"only blanks", std::string(5000, '\n')},
    {"only text", "no markup at all"},
    {"only a declaration", "<?xml version=\"1.0\"?>"},
    {"only declarations", "<?xml version=\"1.0\"?>\n<!DOCTYPE plist>\n<!ELEMENT a>\n"},
    {"only a comment", "<!-- <plist><dict></dict></plist> -->"},
    {"only an unterminated comment", "<!-- <plist>"},
    {"only closing tags", "</dict></plist></a>"},
    {"only a CDATA section", "<![CDATA[<plist>]]>"},
    {"only an unterminated tag", "<plist version=\"1.0\""},
    {"only an opening bracket", "<"},
    {"only closing brackets", ">>>>"},
    {"only ends of CDATA sections", "]]>]]>"},
    {"an unterminated CDATA section first", "<![CDATA[ <plist><dict/></plist>"},
    {"an unterminated comment first", "<!-- -- > <plist><dict/></plist>"},
};

const NamedFile kWithoutTables[] = {
    {"root alone", "<plist/>"},
    {"empty root", "<plist></plist>"},
    {"unclosed root", "<plist>"},
    {"root with text", "<plist>text</plist>"},
    {"no dictionary", "<plist version=\"1.0\"><string>x</string></plist>"},
    {"empty dictionary", "<plist><dict></dict></plist>"},
    {"empty dictionary element", "<plist><dict/></plist>"},
    {"dictionary without containers", "<plist><dict><key>a</key><true/></dict></plist>"},
    {"empty containers", "<plist><dict><dict/><array/></dict></plist>"},
    {"containers below the second child", "<plist><a/><dict><dict/></dict></plist>"},
    {"second root", "<plist/><plist><dict>" + SmallTracks() + SmallPlaylists() + "</dict></plist>"},
    {"other case", "<PLIST><DICT><DICT>" + Track(1) + "</DICT><ARRAY/></DICT></PLIST>"},
    {"name ended by a line break", "<plist><dict\n><dict\n>" + Track(1) + "</dict></dict></plist>"},
    {"element without a name", "<><></><></></>"},
};

}  // namespace

TEST(HostileStructure, WithoutAnElementIsRefused) {
  const HostileHome home;
  for (const auto& [defect, text] : kWithoutAnElement) {
    const Outcome outcome = home.Load(text);
    EXPECT_FALSE(outcome.loaded) << defect;
    EXPECT_THAT(outcome.log, ElementsAre("Open iTunes Library file error!")) << defect;
  }
}

TEST(HostileStructure, WithoutTablesLoadsAsAnEmptyLibrary) {
  const HostileHome home;
  for (const auto& [defect, text] : kWithoutTables) {
    const Outcome outcome = home.Load(text);
    EXPECT_TRUE(outcome.loaded) << defect;
    EXPECT_THAT(outcome.log, IsEmpty()) << defect;
    EXPECT_THAT(outcome.playlists, IsEmpty()) << defect;
    EXPECT_THAT(outcome.songs, IsEmpty()) << defect;
  }
}

TEST(HostileStructure, AnyElementMayStandForTheTopLevelDictionary) {
  const HostileHome home;
  const Outcome outcome =
      home.Load("<x><anything>" + SmallTracks() + SmallPlaylists() + "</anything></x>");
  EXPECT_THAT(outcome.songs, ElementsAre("one", "-"));
  EXPECT_THAT(outcome.playlists, ElementsAre("2:0 p 2"));
}

TEST(HostileStructure, NoArrayLeavesTheTracks) {
  const HostileHome home;
  const Outcome outcome = home.Load("<plist><dict>" + SmallTracks() + "</dict></plist>");
  EXPECT_THAT(outcome.songs, ElementsAre("one", "-"));
  EXPECT_THAT(outcome.playlists, IsEmpty());
}

TEST(HostileStructure, NoTrackDictionaryLeavesThePlaylistsEmpty) {
  const HostileHome home;
  const Outcome outcome = home.Load("<plist><dict>" + SmallPlaylists() + "</dict></plist>");
  EXPECT_THAT(outcome.songs, IsEmpty());
  EXPECT_THAT(outcome.playlists, ElementsAre("2:0 p 0"));
}

TEST(HostileStructure, OddChildrenOfTheTrackDictionaryEndIt) {
  const HostileHome home;
  const Outcome outcome = home.Load(
      LibraryText({Track(1, TextPair("Name", "one")) + "<key>2</key>", SmallPlaylists()}));
  EXPECT_THAT(outcome.songs, ElementsAre("one"));
}

TEST(HostileStructure, MissingKeyOfATrackShiftsThePairs) {
  const HostileHome home;
  // The second dictionary counts as a key, the third track's key as its value, and so on.
  const Outcome outcome = home.Load(
      LibraryText({Track(1, TextPair("Name", "one")) + "<dict></dict>" + Track(3) + Track(4), {}}));
  EXPECT_THAT(outcome.songs, ElementsAre("one", "-", "-"));
}

TEST(HostileStructure, TracksMayBeAnything) {
  const HostileHome home;
  const Outcome outcome = home.Load(
      "<plist><dict><dict><a/><b/><c>text</c><d>7</d><e/><f><g/></f><h/><i><j/><k/></i><l/>"
      "<m><n/><o>12</o><p>Name</p><q>by hand</q></m></dict></dict></plist>");
  EXPECT_THAT(outcome.songs, ElementsAre("-", "-", "-", "-", "by hand"));
}

TEST(HostileStructure, UnclosedElementsKeepWhatWasRead) {
  const HostileHome home;
  const Outcome outcome = home.Load("<plist><dict>" + SmallTracks() + SmallPlaylists());
  EXPECT_THAT(outcome.songs, ElementsAre("one", "-"));
  EXPECT_THAT(outcome.playlists, ElementsAre("2:0 p 2"));
}

TEST(HostileStructure, WrongClosingTagsCloseAllTheSame) {
  const HostileHome home;
  std::string text = SmallLibraryText();
  for (std::size_t at = 0; (at = text.find("</", at)) != std::string::npos; at += 2) {
    text[at + 2] = 'X';
  }
  EXPECT_EQ(home.Load(text).playlists, home.Load(SmallLibraryText()).playlists);
}

TEST(HostileStructure, UnterminatedConstructsKeepWhatStandsBeforeThem) {
  const HostileHome home;
  const std::string text = SmallLibraryText();
  const std::size_t playlists = text.find("<key>Playlists");
  const Outcome expected = home.Load(text.substr(0, playlists));
  EXPECT_THAT(expected.songs, testing::SizeIs(5));
  for (const char* opener : {"<!--", "<![CDATA[", "<key attribute=\"<![CDATA[\">", "<key a='"}) {
    std::string broken = text;
    broken.insert(playlists, opener);
    if (std::string_view(opener) == "<key a='") broken = broken.substr(0, playlists + 8);
    const Outcome outcome = home.Load(broken);
    EXPECT_EQ(outcome.songs, expected.songs) << opener;
    EXPECT_EQ(outcome.playlists, expected.playlists) << opener;
  }
}

TEST(HostileStructure, DuplicateTrackIdsKeepEveryTrack) {
  const HostileHome home;
  const Outcome outcome = home.Load(LibraryText({Repeated(Track(7, TextPair("Name", "x")), 100),
                                                 Playlist(TextPair("Name", "p"), {7, 7, 6, 8})}));
  EXPECT_THAT(outcome.songs, testing::SizeIs(100));
  EXPECT_THAT(outcome.playlists, ElementsAre("2:0 p 2"));
}

TEST(HostileStructure, DescendingTrackIdsLoseItemsAndNothingElse) {
  const HostileHome home;
  std::string tracks;
  std::string playlist = "<dict><key>Items</key><array>";
  for (int id = 1000; id > 0; --id) {
    tracks += Track(id);
    playlist += PlaylistItem(id);
  }
  const Outcome outcome = home.Load(LibraryText({tracks, playlist + "</array></dict>"}));
  EXPECT_THAT(outcome.songs, testing::SizeIs(1000));
  EXPECT_THAT(outcome.playlists, ElementsAre("2:0 - 1"));  // the middle of the table
}

TEST(HostileStructure, TrackIdsOutOfRangeWrapAround) {
  const HostileHome home;
  const auto track = [](const std::string& id) {
    return "<key>k</key><dict><key>Track ID</key><integer>" + id + "</integer></dict>";
  };
  const auto item = [](const std::string& id) {
    return "<dict><key>Track ID</key><integer>" + id + "</integer></dict>";
  };
  const Outcome outcome = home.Load(
      LibraryText({track("-2147483648") + track("x") + track("4294967297") + track("2147483647"),
                   "<dict><key>Items</key><array>" + item("2147483648") + item("0") + item("1") +
                       item("-9223372036854775808") + item("6442450943") +
                       item("99999999999999999999") + "</array></dict>"}));
  // -2^31, 0, 1, 0 again, 2^31 - 1; the clamped one is -1, which no track has.
  EXPECT_THAT(outcome.playlists, ElementsAre("2:0 - 5"));
}

TEST(HostileStructure, ListOfPlaylistsInsideItselfIsHarmless) {
  const HostileHome home;
  std::string playlists = Playlist(TextPair("Name", "innermost"), {1});
  for (int depth = 0; depth < 50; ++depth) {
    playlists = "<dict><key>Name</key><string>nested</string><key>Items</key><array>" + playlists +
                "</array></dict>";
  }
  const Outcome outcome = home.Load(LibraryText({Track(1), playlists}));
  EXPECT_THAT(outcome.playlists, ElementsAre("2:0 nested 0"));
}
