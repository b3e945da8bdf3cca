// Texts that end inside a comment, a CDATA section or a tag: the parsing ends there, before anything
// moves, keeps the records built so far, and never reads behind the text.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/GuardedPages.h"
#include "tests/support/InstructionSets.h"
#include "tests/unit/xml/TreeText.h"
#include "xml/CDataSections.h"
#include "xml/StructuralIndex.h"
#include "xml/TreeBuilder.h"

using tavrel::system::InstructionSet;
using tavrel::test::ElementsOf;
using tavrel::test::GuardedPages;
using tavrel::test::Parse;
using tavrel::test::TreeOf;

namespace {

// The ending follows a document that is in order up to there: none of its bytes may change.
void ExpectEndsTheParsing(const std::string& ending) {
  const std::string before = "<a b='1'>text<c/>";
  const auto document = Parse(before + ending);
  EXPECT_EQ(TreeOf(document->rootXMLElement()), "a(b=1)'text'[c]") << ending;
  EXPECT_EQ(ElementsOf(*document).size(), 2u) << ending;
  EXPECT_EQ(document->fields().bytes + before.size(), ending) << ending;
}

// Parses a text that stands at `bytes`.
void ParseInPlace(char* bytes, std::size_t length, std::optional<InstructionSet> index) {
  tavrel::xml::DocumentTree tree;
  tavrel::xml::TreeBuilder builder(tree, bytes, bytes + length);
  if (index) {
    builder.BuildIndexed(*index);
  } else {
    builder.Build();
  }
  for (const TBXMLElement* element : ElementsOf(tree.fields)) {
    EXPECT_LE(element->name, bytes + length);
    EXPECT_LE(element->text, bytes + length);
  }
}

// Parses `text`, in every way there is, where reading one byte outside of it is fatal on either
// side.
void ParseGuarded(GuardedPages& pages, std::string_view text) {
  std::vector<std::optional<InstructionSet>> ways = {std::nullopt};
  for (const InstructionSet set : tavrel::test::SetsForIndex()) ways.emplace_back(set);
  for (const auto& way : ways) {
    ParseInPlace(pages.PlaceAtEnd(text), text.size(), way);
    for (const char filler : {'<', '>', ']', '-', '\''}) {
      ParseInPlace(pages.PlaceAtStart(text, filler), text.size(), way);
    }
  }
}

}  // namespace

TEST(Unterminated, CommentEndsTheParsing) {
  for (const char* ending :
       {"<!--", "<!-- x", "<!-- x --", "<!-- x ->", "<!---", "<!-- <d/></a>"}) {
    ExpectEndsTheParsing(ending);
  }
}

TEST(Unterminated, SectionEndsTheParsing) {
  for (const char* ending :
       {"<![CDATA[", "<![CDATA[x", "<![CDATA[x]]", "<![CDATA[x]] ></a>", "<![CDATA[<d/></a>"}) {
    ExpectEndsTheParsing(ending);
  }
}

TEST(Unterminated, SectionWithNoTagBehindItEndsTheParsingUnmoved) {
  for (const char* ending : {"<![CDATA[x]]>", "<![CDATA[x]]>y", "<![CDATA[x]]><![CDATA[y]]>",
                             "<![CDATA[x]]> <![CDATA[y]]> z > ", "<![CDATA[<d></d>]]>"}) {
    ExpectEndsTheParsing(ending);
  }
}

TEST(Unterminated, RunOfSectionsEndsTheParsingUnmovedWhenItsLastHasNoEnd) {
  for (const char* ending : {"<![CDATA[x]]><![CDATA[", "<![CDATA[x]]>y<![CDATA[z]]<d/></a>"}) {
    ExpectEndsTheParsing(ending);
  }
}

TEST(Unterminated, TagEndsTheParsing) {
  for (const char* ending : {"<", "<d", "<d e='1'", "</", "</a", "<?", "<?d?", "<!", "<!DOCTYPE",
                             "<d/", "<!-", "<![CDATA", "<d e='x"}) {
    ExpectEndsTheParsing(ending);
  }
}

TEST(Unterminated, SectionInsideATagEndsTheParsing) {
  for (const char* ending : {"<d <![CDATA[", "<d e='<![CDATA[x'/></a>", "<d <![CDATA[x]] ></a>",
                             "<d <![CDATA[x]]> <![CDATA[y></a>", "</a <![CDATA[></a>",
                             "<? <![CDATA[ ?></a>", "<d <![CDATA[x]]>"}) {
    ExpectEndsTheParsing(ending);
  }
}

TEST(Unterminated, ASingleUnendingConstructLeavesAnEmptyTree) {
  for (const char* text : {"<", "<a", "<!--", "<![CDATA[", "<![CDATA[x]]>", "<a <![CDATA["}) {
    EXPECT_EQ(Parse(text)->rootXMLElement(), nullptr) << text;
  }
}

TEST(Unterminated, NothingOutsideTheTextIsReadWhereverItEnds) {
  GuardedPages pages(4096);
  const std::string_view documents[] = {
      "<?xml version='1.0'?><!DOCTYPE a><a b='1' c=\"2\"> x <!-- c --> <d/> </a> ",
      "<a>x<![CDATA[<y>]]> z <![CDATA[ ]]]>] <b e='<![CDATA[> ' ]]>'/></a><![CDATA[]]>",
      "<a <![CDATA[>]]>b='<![CDATA[<![C]]>DATA[x<![CDATA[]]>y'>></a></b>",
      "<><//></><!></ ><a\t/>\n<a / b='' /></a",
      "<r><key>Name</key><string>x</string><k>y</k><integer>12</integer></r",
  };
  for (const std::string_view document : documents) {
    for (std::size_t length = 0; length <= document.size(); ++length) {
      ParseGuarded(pages, document.substr(0, length));
      ParseGuarded(pages, document.substr(length));
    }
  }
}

TEST(Unterminated, NothingOutsideAValueIsReadOrWritten) {
  GuardedPages pages(4096);
  const std::string_view values[] = {"<![CDATA[]]>", "x<![CDATA[<![CDATA[x]]]>]>y]]>",
                                     "<![C<![CDATA[]]>DATA[x]]", "[[[[]]]]>>>>",
                                     "ATA[x]]><![CDATA[<![CDATA["};
  for (const std::string_view value : values) {
    for (std::size_t length = 0; length <= value.size(); ++length) {
      for (const std::string_view part : {value.substr(0, length), value.substr(length)}) {
        char* atEnd = pages.PlaceAtEnd(part);
        tavrel::xml::RemoveValueMarkers(atEnd, atEnd + part.size());
        const std::string result = atEnd;
        char* atStart = pages.PlaceAtStart(part, ']');
        tavrel::xml::RemoveValueMarkers(atStart, atStart + part.size());
        EXPECT_EQ(atStart, result);
      }
    }
  }
}
