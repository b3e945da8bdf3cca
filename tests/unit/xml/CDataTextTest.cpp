// CDATA sections in character data.
#include <gtest/gtest.h>

#include <string>

#include "tests/unit/xml/TreeText.h"

using tavrel::test::Parse;
using tavrel::test::TreeOf;

namespace {

constexpr const char* kGap = "            ";  // the twelve blanks that a section leaves behind

}  // namespace

TEST(CDataText, IsTheSectionsContentExactly) {
  EXPECT_EQ(TreeOf("<a><![CDATA[<b> & \"c\" </a> > ]] ]>]]></a>"), "a'<b> & \"c\" </a> > ]] ]>'");
  EXPECT_EQ(TreeOf("<a><![CDATA[]]></a>"), "a''");
  EXPECT_EQ(TreeOf("<a><![CDATA[x]]]></a>"), "a'x]'");
}

TEST(CDataText, TwoSectionsInARowGiveTheirContentsOneBehindTheOther) {
  EXPECT_EQ(TreeOf("<a><![CDATA[<x>]]><![CDATA[<y>]]></a>"), "a'<x><y>'");
  EXPECT_EQ(TreeOf("<a><![CDATA[x]]><![CDATA[]]><![CDATA[y]]><![CDATA[z]]></a>"), "a'xyz'");
}

TEST(CDataText, KeepsWhatStandsAroundTheSections) {
  EXPECT_EQ(TreeOf("<a>1<![CDATA[<x>]]>2<![CDATA[]]> 3 <![CDATA[y]]>4</a>"), "a'1<x>2 3 y4'");
}

TEST(CDataText, IsTrimmedLikeAnyOtherText) {
  EXPECT_EQ(TreeOf("<a> <![CDATA[ x ]]> </a>"), "a'x'");
  EXPECT_EQ(TreeOf("<a><![CDATA[  ]]></a>"), "a''");
}

TEST(CDataText, LeavesTwelveBlanksASectionBeforeTheNextTag) {
  EXPECT_EQ(TreeOf("<a><![CDATA[x]]>y<b/>"), std::string("a'xy") + kGap + "'[b]");
  EXPECT_EQ(TreeOf("<a><![CDATA[x]]><![CDATA[y]]><b/>"),
            std::string("a'xy") + kGap + kGap + "'[b]");
}

TEST(CDataText, ACommentEndsARunLikeATagAndKeepsTheBlanksInside) {
  EXPECT_EQ(TreeOf("<a><![CDATA[x]]><!-- c --><![CDATA[y]]></a>"),
            std::string("a'x") + kGap + "<!-- c -->y'");
}

TEST(CDataText, AnOpenerInsideASectionIsContent) {
  EXPECT_EQ(TreeOf("<a><![CDATA[<![CDATA[x]]>y</a>"), "a'<![CDATA[xy'");
}

TEST(CDataText, ContentIsNeverScannedAgain) {
  // Content and what follows it make up an opener, a comment, a tag: none of them is one.
  EXPECT_EQ(TreeOf("<a><![CDATA[<![CDA]]>TA[x]]></a>"), "a'<![CDATA[x]]>'");
  EXPECT_EQ(TreeOf("<a><![CDATA[<!-]]>- x</a>"), "a'<!-- x'");
  EXPECT_EQ(TreeOf("<a><![CDATA[<b]]>>x</a>"), "a'<b>x'");
  EXPECT_EQ(TreeOf("<a><![CDATA[<]]><![CDATA[b>]]></a>"), "a'<b>'");
}

TEST(CDataText, AnOpenerIsRecognisedWholeAndInCapitalsOnly) {
  EXPECT_EQ(TreeOf("<a><![cdata[x]]>y</a>"), "a''");
  EXPECT_EQ(TreeOf("<a>x<![CDATA x]]>y</a>"), "a'x'");
}

TEST(CDataText, OutsideElementsLeavesNothing) {
  EXPECT_EQ(TreeOf("<![CDATA[<x/>]]><a/>"), "a");
  EXPECT_EQ(TreeOf("<a/><![CDATA[<x/>]]><b/>"), "a");
}

TEST(CDataText, BehindAClosedChildIsLostAndHidesItsTags) {
  EXPECT_EQ(TreeOf("<a><b>x</b><![CDATA[<c>]]><d/></a>"), "a[b'x' d]");
}

TEST(CDataText, TheBytesThatAreNotMovedStayWhereTheyAre) {
  const std::string text = "<a>1<![CDATA[x]]>2<![CDATA[y]]>3<b/>";
  const auto document = Parse(text);
  const std::string bytes(document->fields().bytes, text.size());
  using namespace std::string_literals;
  EXPECT_EQ(bytes, "\0a\0"s + "1x2y3" + kGap + kGap + "\0b\0\0"s);
}
