// Texts that make a careless parser take time that grows with the square of their length.
#pragma once

#include <array>
#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

namespace tavrel::test {

// `before`, then `piece` as often as fits, then `behind`.
struct HostileText {
  const char* name;
  std::string_view before;
  std::string_view piece;
  std::string_view behind;

  [[nodiscard]] std::string OfSize(std::size_t bytes) const {
    std::string text(before);
    text.reserve(bytes + behind.size());
    while (text.size() + piece.size() <= bytes) text += piece;
    return text.append(behind);
  }
};

// How the tests' reports name one.
inline void PrintTo(const HostileText& text, std::ostream* out) {
  *out << text.name;
}

inline constexpr std::array kHostileTexts = {
    HostileText{"EmptySections", "<a>", "<![CDATA[]]>", "</a>"},
    HostileText{"SectionsWithContentAndGaps", "<a>", "<![CDATA[x]]>yz ", "</a>"},
    HostileText{"SectionsEachBeforeATag", "<a>", "<![CDATA[x]]><b/>", "</a>"},
    HostileText{"SectionsWithoutATagBehind", "<a>", "<![CDATA[x]]>", ""},
    HostileText{"SectionsOfWhichTheLastIsCutOff", "<a>", "<![CDATA[x]]>", "<![CDATA[</a>"},
    HostileText{"SectionOpeners", "<a>", "<![CDATA[", "</a>"},
    HostileText{"SectionOfBrackets", "<a><![CDATA[", "]]", "]]></a>"},
    HostileText{"SectionOfOpeners", "<a><![CDATA[", "<![CDATA[", "]]></a>"},
    HostileText{"EmptySectionsInAValue", "<a b='", "<![CDATA[]]>", "'/>"},
    HostileText{"SectionsInAValue", "<a b='", "<![CDATA[xy]]>z", "'/>"},
    HostileText{"OpenersInsideASectionOfAValue", "<a b='<![CDATA[", "<![CDATA[", "]]>'/>"},
    HostileText{"SectionsInATag", "<a ", "<![CDATA[<]]>", "/>"},
    HostileText{"SectionsInATagThatNeverEnds", "<a ", "<![CDATA[<]]>", ""},
    HostileText{"TagsThatHoldAnUnendingSection", "<r>", "<a <![CDATA[", "</r>"},
    HostileText{"Attributes", "<a", " b='1'", "/>"},
    HostileText{"AttributesWithoutQuotes", "<a", " b=1", "/>"},
    HostileText{"QuotesInATag", "<a b=", "'\"", "/>"},
    HostileText{"BlanksInATag", "<a", " ", "/>"},
    HostileText{"SlashesInATag", "<a", "/", ">"},
    HostileText{"NestedElements", "", "<a>", ""},
    HostileText{"NestedElementsWithText", "", "<a> x ", "</a>"},
    HostileText{"ClosingTagsWithoutElements", "<a>", "</a>", ""},
    HostileText{"EmptyChildren", "<a> text ", "<b/>", "</a>"},
    HostileText{"ClosedChildren", "<a>", "<b> </b>", "</a>"},
    HostileText{"Declarations", "<a> text ", "<?b?> ", "</a>"},
    HostileText{"TopLevelElements", "", "<a></a>", ""},
    HostileText{"Comments", "<a>", "<!---->", "</a>"},
    HostileText{"CommentsThatNeverEnd", "<a>", "<!--", ""},
    HostileText{"CommentOfDashes", "<a><!", "-", "</a>"},
    HostileText{"BlankText", "<a>", " ", "</a>"},
    HostileText{"BlankTextsOfEmptyChildren", "<a>", "<b/>       ", "</a>"},
    HostileText{"LessThanSigns", "", "<", ""},
    HostileText{"GreaterThanSigns", "<a>", ">", "</a>"},
    HostileText{"TagsEndedByTags", "", "<a", ">"},
    HostileText{"TagsWithoutAName", "", "<>", ""},
};

}  // namespace tavrel::test
