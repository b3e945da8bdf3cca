// Attributes of start tags.
#include <gtest/gtest.h>

#include <string>

#include "tests/unit/xml/TreeText.h"

using tavrel::test::Parse;
using tavrel::test::TreeOf;

TEST(Attributes, StandInDocumentOrder) {
  EXPECT_EQ(TreeOf("<a b='1' c=\"2\" d='3'></a>"), "a(b=1, c=2, d=3)''");
}

TEST(Attributes, SingleQuotesMayHoldDoubleQuotesAndTheOtherWayRound) {
  EXPECT_EQ(TreeOf("<a b='say \"x\"' c=\"it's\"/>"), "a(b=say \"x\", c=it's)");
}

TEST(Attributes, MayHaveWhitespaceOfAnyKindAroundThem) {
  EXPECT_EQ(TreeOf("<a b = '1' c= '2' d ='3'/>"), "a(b=1, c=2, d=3)");
  EXPECT_EQ(TreeOf("<a  \t\n\v\f\r b\t=\n'1'\r\nc\v=\f'2' />"), "a(b=1, c=2)");
}

TEST(Attributes, NeedNoBlankBetweenThem) {
  EXPECT_EQ(TreeOf("<a b='1'c='2'/>"), "a(b=1, c=2)");
}

TEST(Attributes, ValuesKeepTheirBlanks) {
  EXPECT_EQ(TreeOf("<a b=' x\n' c=''/>"), "a(b= x\n, c=)");
}

TEST(Attributes, WithoutAQuotedValueLeaveNoRecord) {
  EXPECT_EQ(TreeOf("<a b></a>"), "a''");
  EXPECT_EQ(TreeOf("<a b=c></a>"), "a''");
  EXPECT_EQ(TreeOf("<a b=></a>"), "a''");
  EXPECT_EQ(TreeOf("<a b='1' c></a>"), "a(b=1)''");
  EXPECT_EQ(TreeOf("<a b='1' c=/>"), "a(b=1)");
}

TEST(Attributes, AValueWithoutAClosingQuoteLeavesNoRecord) {
  EXPECT_EQ(TreeOf("<a b='1></a>"), "a''");
  EXPECT_EQ(TreeOf("<a b='1\"></a>"), "a''");
  EXPECT_EQ(TreeOf("<a b='1' c=\"2></a>"), "a(b=1)''");
}

TEST(Attributes, ABareWordTakesTheNextQuotedValue) {
  // Behind a name, everything up to a quote is skipped, whatever it is: kept.
  EXPECT_EQ(TreeOf("<a b c='1'/>"), "a(b=1)");
  EXPECT_EQ(TreeOf("<a b=c d='1' e='2'/>"), "a(b=1, e=2)");
  EXPECT_EQ(TreeOf("<a b == x/y '1'/>"), "a(b=1)");
}

TEST(Attributes, ANameRunsUpToABlankOrAnEqualsSign) {
  EXPECT_EQ(TreeOf("<a \"b'/c='1'/>"), "a(\"b'/c=1)");
  EXPECT_EQ(TreeOf("<a =b='1'/>"), "a(=b=1)");
  EXPECT_EQ(TreeOf("<a 'b'='1'/>"), "a('b'=1)");
  EXPECT_EQ(TreeOf("<a \xC3\xA9\xC2\xA0='1'/>"), "a(\xC3\xA9\xC2\xA0=1)");
}

TEST(Attributes, TheSlashOfAnEmptyElementTagIsANameThatNeverEnds) {
  EXPECT_EQ(TreeOf("<a b='1'/>"), "a(b=1)");
  EXPECT_EQ(TreeOf("<a b='1' />"), "a(b=1)");
  EXPECT_EQ(TreeOf("<a b='1'/ c='2'/>"), "a(b=1, /=2)");
}

TEST(Attributes, OfOneNameAreAllKept) {
  EXPECT_EQ(TreeOf("<a b='1' b='2' B='3'/>"), "a(b=1, b=2, B=3)");
}

TEST(Attributes, AGreaterThanSignEndsTheTagInsideQuotesToo) {
  EXPECT_EQ(TreeOf("<a b='1' c='x>y'></a>"), "a(b=1)'y'>'");
  EXPECT_EQ(TreeOf("<a b='x/>y'></a>"), "a");
}

TEST(Attributes, ASlashBeforeTheClosingQuoteDoesNotMakeTheElementEmpty) {
  EXPECT_EQ(TreeOf("<a b='x/'>y</a>"), "a(b=x/)'y'");
}

TEST(Attributes, BelongToTheTagTheyStandIn) {
  EXPECT_EQ(TreeOf("<a b='1'><c d='2'/><e/><f g='3'></f></a>"), "a(b=1)[c(d=2) e f(g=3)'']");
  EXPECT_EQ(TreeOf("<a></a b='1'>"), "a''");
  EXPECT_EQ(Parse("<?xml version='1.0'?>")->fields().currentAttributeBuffer, nullptr);
}
