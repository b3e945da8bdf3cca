// CDATA markers in attribute values.
#include <gtest/gtest.h>

#include <string>

#include "tests/unit/xml/TreeText.h"
#include "xml/CDataSections.h"

using tavrel::test::TreeOf;

namespace {

// A value after its markers were taken out.
std::string Cleaned(std::string value) {
  tavrel::xml::RemoveValueMarkers(value.data(), value.data() + value.size());
  return value.c_str();
}

}  // namespace

TEST(ValueMarkers, GoAndTheContentStays) {
  EXPECT_EQ(TreeOf("<a b='1<![CDATA[2]]>3'/>"), "a(b=123)");
  EXPECT_EQ(TreeOf("<a b='<![CDATA[]]>'/>"), "a(b=)");
  EXPECT_EQ(TreeOf("<a b='<![CDATA[x]]>' c='<![CDATA[y]]>'/>"), "a(b=x, c=y)");
  EXPECT_EQ(TreeOf("<a b='<![CDATA[x]]><![CDATA[y]]> <![CDATA[z]]>'/>"), "a(b=xy z)");
}

TEST(ValueMarkers, ASectionHidesQuotesAndTheEndOfTheTag) {
  EXPECT_EQ(TreeOf("<a b='<![CDATA[it's > \" <]]>' c=\"<![CDATA[\"]]>\">x</a>"),
            "a(b=it's > \" <, c=\")'x'");
  EXPECT_EQ(TreeOf("<a b='<![CDATA[/>]]>'/>"), "a(b=/>)");
}

TEST(ValueMarkers, OutsideAValueASectionIsNothingSpecialToTheScanner) {
  EXPECT_EQ(TreeOf("<a <![CDATA[b='1']]>/>"), "a(<![CDATA[b=1)");
  EXPECT_EQ(TreeOf("<a b=<![CDATA[x'1']]>/>"), "a(b=1)");
}

TEST(ValueMarkers, AnEndMarkerWithoutAnOpenerStays) {
  EXPECT_EQ(Cleaned("x]]>y"), "x]]>y");
  EXPECT_EQ(Cleaned("]]><![CDATA[x]]>]]>"), "]]>x]]>");
}

TEST(ValueMarkers, PartialMarkersStay) {
  EXPECT_EQ(Cleaned(""), "");
  EXPECT_EQ(Cleaned("<![CDATA"), "<![CDATA");
  EXPECT_EQ(Cleaned("<![cdata[x]]>"), "<![cdata[x]]>");
  EXPECT_EQ(Cleaned("<![CDATA[x]]"), "x]]");
}

TEST(ValueMarkers, AnOpenerThatARemovalFormsCountsAsWell) {
  EXPECT_EQ(Cleaned("<![C<![CDATA[]]>DATA[x]]>y"), "xy");
  EXPECT_EQ(Cleaned("<<![CDATA[]]>![CDATA[x]]>y"), "xy");
  // Formed by content and what follows the section, in a whole document.
  EXPECT_EQ(TreeOf("<a b='<![CDATA[<![C]]>DATA[x<![CDATA[]]>y'/>"), "a(b=xy)");
}

TEST(ValueMarkers, AnEndThatARemovalFormsCountsAsWell) {
  EXPECT_EQ(Cleaned("<![CDATA[<![CDATA[x]]]>]>y"), "xy");
  EXPECT_EQ(Cleaned("<![CD<![CDATA[ATA[x]]]>]>y"), "xy");
  EXPECT_EQ(Cleaned("<![CD<![CDATA[ATA[x]]]]>>y"), "xy");
}

TEST(ValueMarkers, AnEndIsOnlyLookedForBehindTheOpenersPlace) {
  EXPECT_EQ(Cleaned("<![CDATA[x]<![CDATA[]]>]>y]]>z"), "x]]>yz");
}

TEST(ValueMarkers, OpenersInsideASectionTakeTheNextEnds) {
  EXPECT_EQ(Cleaned("<![CDATA[<![CDATA[a]]>]]>b"), "ab");
}

TEST(ValueMarkers, AnOpenerWithoutAnEndGoesAndTheRestStays) {
  EXPECT_EQ(Cleaned("x<![CDATA[y"), "xy");
  EXPECT_EQ(Cleaned("<![CDATA["), "");
}

TEST(ValueMarkers, TheRemovalEndsAtAnOpenerWithoutAnEnd) {
  EXPECT_EQ(Cleaned("<![CDATA[x<![CDATA[y"), "x<![CDATA[y");
  EXPECT_EQ(TreeOf("<a b='<![CDATA[x<![CDATA[y]]>z'/>"), "a(b=xyz)");
  EXPECT_EQ(TreeOf("<a b='<![CDATA[<![CDATA[<![CDATA[]]>z'/>"), "a(b=<![CDATA[z)");
}

TEST(ValueMarkers, AreKeptInNames) {
  EXPECT_EQ(TreeOf("<a b<![CDATA[c]]>='1'/>"), "a(b<![CDATA[c]]>=1)");
}
