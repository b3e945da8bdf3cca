// Library files of one piece, repeated as often as one likes.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>

#include "tests/support/Texts.h"

namespace tavrel::test {

struct Family {
  const char* name;
  std::string before;
  std::string piece;
  std::string behind;

  [[nodiscard]] std::string OfSize(std::size_t bytes) const {
    return before + Repeated(piece, bytes / piece.size()) + behind;
  }
};

inline void PrintTo(const Family& family, std::ostream* stream) {
  *stream << family.name;
}

inline const std::string kTop = "<plist><dict>";
inline const std::string kNameOfOne =
    "<plist><dict><dict><key>1</key><dict><key>Track ID</key><integer>1</integer>"
    "<key>Name</key><string>";
inline const std::string kNameEnd = "</string></dict></dict></dict></plist>";
inline const std::string kOneTrack =
    "<plist><dict><dict><key>1</key><dict><k/><i>1</i></dict></dict><array>";

inline const Family kFamilies[] = {
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

}  // namespace tavrel::test
