// The text of an element.
#include <gtest/gtest.h>

#include <string>

#include "tests/unit/xml/TreeText.h"

using tavrel::test::Parse;
using tavrel::test::TreeOf;

TEST(TBXMLText, LosesTheBlanksAndLineBreaksAroundIt) {
  EXPECT_EQ(TreeOf("<a> \r\n\t x  y \n </a>"), "a'x  y'");
  EXPECT_EQ(TreeOf("<a>\v\fx\f\v</a>"), "a'x'");
  EXPECT_EQ(TreeOf("<a>x</a>"), "a'x'");
}

TEST(TBXMLText, OnlyTheSixWhitespaceBytesAreTrimmed) {
  for (int byte = 1; byte < 256; ++byte) {
    if (byte == '<' || byte == '>') continue;
    const std::string text(1, static_cast<char>(byte));
    const bool blank = text.find_first_of(" \t\n\v\f\r") == 0;
    const std::string kept = blank ? "x" : text + "x" + text;
    EXPECT_EQ(TreeOf("<a>" + text + "x" + text + "</a>"), "a'" + kept + "'") << byte;
  }
}

TEST(TBXMLText, MultiByteCharactersAreNeverTrimmedOrSplit) {
  // U+00A0, U+0085 and U+2028: blanks elsewhere, bytes like 0x85 and 0xA0 here.
  for (const std::string blank : {"\xC2\xA0", "\xC2\x85", "\xE2\x80\xA8", "\xE3\x80\x80"}) {
    EXPECT_EQ(TreeOf("<a> " + blank + "x" + blank + " </a>"), "a'" + blank + "x" + blank + "'");
  }
}

TEST(TBXMLText, OfWhitespaceOnlyBecomesEmptyAndNotNone) {
  EXPECT_EQ(TreeOf("<a>   \n\t </a>"), "a''");
  EXPECT_EQ(TreeOf("<a> </a>"), "a''");
  EXPECT_EQ(TreeOf("<a></a>"), "a''");
}

TEST(TBXMLText, IsNoneOnceAChildWasClosedByATag) {
  EXPECT_EQ(TreeOf("<a>before<b>x</b>after</a>"), "a[b'x']");
  EXPECT_EQ(TreeOf("<a>before<b/><c></c></a>"), "a[b c'']");
}

TEST(TBXMLText, BehindAClosedChildIsKeptNowhere) {
  const auto document = Parse("<a><b>x</b>after</a>");
  const TBXMLElement* root = document->rootXMLElement();
  EXPECT_EQ(root->text, nullptr);
  EXPECT_STREQ(root->firstChild->text, "x");
}

TEST(TBXMLText, WithEmptyChildrenIsWhatStandsBeforeTheFirst) {
  EXPECT_EQ(TreeOf("<a> before <b/> between <c/> after </a>"), "a'before'[b c]");
  EXPECT_EQ(TreeOf("<a><b/>after</a>"), "a''[b]");
  EXPECT_EQ(TreeOf("<a> <b/></a>"), "a''[b]");
}

TEST(TBXMLText, OfAnElementThatIsNeverClosedIsNotTrimmed) {
  EXPECT_EQ(TreeOf("<a> x <b/>"), "a' x '[b]");
  EXPECT_EQ(TreeOf("<a> x "), "a' x '");
  EXPECT_EQ(TreeOf("<a> <b> x </b>"), "a[b'x']");
}

TEST(TBXMLText, IsNoneWhenAGreaterThanSignFollowsTheStartTag) {
  EXPECT_EQ(TreeOf("<a>></a>"), "a");
  EXPECT_EQ(TreeOf("<a>>x</a>"), "a");
  EXPECT_EQ(TreeOf("<a>x></a>"), "a'x>'");
  EXPECT_EQ(TreeOf("<a<>x</a>"), "a");  // also behind the '<' that ends a tag
}

TEST(TBXMLText, HoldsTheCommentsInsideIt) {
  EXPECT_EQ(TreeOf("<a>x<!-- <b> & </a> -->y</a>"), "a'x<!-- <b> & </a> -->y'");
  EXPECT_EQ(TreeOf("<a><!-- c --></a>"), "a'<!-- c -->'");
  EXPECT_EQ(TreeOf("<a>x<!-- c --> <b/></a>"), "a'x<!-- c -->'[b]");
}

TEST(TBXMLText, ACommentOutsideElementsLeavesNothing) {
  EXPECT_EQ(TreeOf("<!-- a --><b/><!-- c --><d/>"), "b");
}

TEST(TBXMLText, TheDashesOfACommentsStartMayBeThoseOfItsEnd) {
  EXPECT_EQ(TreeOf("<a><!--></a>"), "a'<!-->'");
  EXPECT_EQ(TreeOf("<a><!---></a>"), "a'<!--->'");
  EXPECT_EQ(TreeOf("<a><!-- - -- -></a>--></a>"), "a'<!-- - -- -></a>-->'");
}

TEST(TBXMLText, EndsAtATagThatLeavesNoRecord) {
  EXPECT_EQ(TreeOf("<a>x<?b?>y</a>"), "a'x'");
  EXPECT_EQ(TreeOf("<a>x<!b>y</a>"), "a'x'");
  EXPECT_EQ(TreeOf("<a> x <?b?> y </a>"), "a'x'");  // and is trimmed there
}

TEST(TBXMLText, KeepsEntitiesAsTheyStand) {
  EXPECT_EQ(TreeOf("<a b='&lt;&#38;&quot;'>&amp;&lt;&#x41; &unknown</a>"),
            "a(b=&lt;&#38;&quot;)'&amp;&lt;&#x41; &unknown'");
}

TEST(TBXMLText, KeepsBytesThatAreNotUtf8) {
  EXPECT_EQ(TreeOf("<a>\xFF\xC0\x80</a>"), "a'\xFF\xC0\x80'");
}
