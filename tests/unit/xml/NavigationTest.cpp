// Reading records by name.
#include <gtest/gtest.h>

#include <string>

#include "tests/unit/xml/TreeText.h"

using tavrel::test::Parse;

TEST(Navigation, ReadsNamesTextsAndValues) {
  const auto document = Parse("<a b='1'>x</a>");
  const TBXMLElement* a = document->rootXMLElement();
  EXPECT_EQ(TBXML::elementName(a), "a");
  EXPECT_EQ(TBXML::textForElement(a), "x");
  EXPECT_EQ(TBXML::attributeName(a->firstAttribute), "b");
  EXPECT_EQ(TBXML::attributeValue(a->firstAttribute), "1");
}

TEST(Navigation, AMissingFieldReadsAsTheEmptyString) {
  const TBXMLElement element{};
  const TBXMLAttribute attribute{};
  EXPECT_EQ(TBXML::elementName(&element), "");
  EXPECT_EQ(TBXML::textForElement(&element), "");
  EXPECT_EQ(TBXML::attributeName(&attribute), "");
  EXPECT_EQ(TBXML::attributeValue(&attribute), "");
}

TEST(Navigation, AClearedTextAndABlankTextReadAsTheEmptyString) {
  const auto document = Parse("<a>x<b>  </b></a>");
  const TBXMLElement* a = document->rootXMLElement();
  EXPECT_EQ(a->text, nullptr);
  EXPECT_EQ(TBXML::textForElement(a), "");
  ASSERT_NE(a->firstChild->text, nullptr);
  EXPECT_EQ(TBXML::textForElement(a->firstChild), "");
}

TEST(Navigation, BytesThatAreNotUtf8ReadAsNone) {
  const auto document = Parse("<a\xFF b\xC0='\x80'>\xED\xA0\x80</a>");
  const TBXMLElement* a = document->rootXMLElement();
  EXPECT_EQ(TBXML::elementName(a), std::nullopt);
  EXPECT_EQ(TBXML::textForElement(a), std::nullopt);
  EXPECT_EQ(TBXML::attributeName(a->firstAttribute), std::nullopt);
  EXPECT_EQ(TBXML::attributeValue(a->firstAttribute), std::nullopt);
  EXPECT_EQ(TBXML::valueOfAttributeNamed("b\xC0", a), std::nullopt);
}

TEST(Navigation, TextsAreIndependentCopies) {
  auto document = Parse("<a>x</a>");
  const auto text = TBXML::textForElement(document->rootXMLElement());
  document.reset();
  EXPECT_EQ(text, "x");
}

TEST(Navigation, FindsTheFirstChildOfAName) {
  const auto document = Parse("<a><b/><c i='1'/><c i='2'/></a>");
  const TBXMLElement* a = document->rootXMLElement();
  EXPECT_EQ(TBXML::childElementNamed("b", a), a->firstChild);
  EXPECT_EQ(TBXML::childElementNamed("c", a), a->firstChild->nextSibling);
  EXPECT_EQ(TBXML::childElementNamed("d", a), nullptr);
  EXPECT_EQ(TBXML::childElementNamed("a", a), nullptr);
  EXPECT_EQ(TBXML::childElementNamed("b", a->firstChild), nullptr);
}

TEST(Navigation, NamesAreComparedByteForByte) {
  const auto document = Parse("<a><Key/><keys/><ke/><key\t/><\xC3\xA9/></a>");
  const TBXMLElement* a = document->rootXMLElement();
  EXPECT_EQ(TBXML::childElementNamed("key", a), nullptr);
  EXPECT_EQ(TBXML::childElementNamed("KEY", a), nullptr);
  EXPECT_EQ(TBXML::childElementNamed("", a), nullptr);
  EXPECT_EQ(TBXML::childElementNamed("\xC3", a), nullptr);
  EXPECT_EQ(TBXML::childElementNamed("Key", a), a->firstChild);
  EXPECT_NE(TBXML::childElementNamed("key\t", a), nullptr);
  EXPECT_NE(TBXML::childElementNamed("\xC3\xA9", a), nullptr);
}

TEST(Navigation, AnEmptyNameFindsATagWithoutAName) {
  const auto document = Parse("<a><b/>< c='1'/></a>");
  const TBXMLElement* a = document->rootXMLElement();
  EXPECT_EQ(TBXML::childElementNamed("", a), a->currentChild);
}

TEST(Navigation, FindsTheNextSiblingOfANameButNeverTheElementItself) {
  const auto document = Parse("<a><b/><c/><b/><c/></a>");
  const TBXMLElement* first = document->rootXMLElement()->firstChild;
  const TBXMLElement* third = first->nextSibling->nextSibling;
  EXPECT_EQ(TBXML::nextSiblingNamed("b", first), third);
  EXPECT_EQ(TBXML::nextSiblingNamed("b", third), nullptr);
  EXPECT_EQ(TBXML::nextSiblingNamed("c", third), third->nextSibling);
  EXPECT_EQ(TBXML::nextSiblingNamed("d", first), nullptr);
  EXPECT_EQ(TBXML::nextSiblingNamed("a", document->rootXMLElement()), nullptr);
}

TEST(Navigation, ReadsTheValueOfTheFirstAttributeOfAName) {
  const auto document = Parse("<a b='1' c='2' b='3' e=''/>");
  const TBXMLElement* a = document->rootXMLElement();
  EXPECT_EQ(TBXML::valueOfAttributeNamed("b", a), "1");
  EXPECT_EQ(TBXML::valueOfAttributeNamed("c", a), "2");
  EXPECT_EQ(TBXML::valueOfAttributeNamed("e", a), "");
}

TEST(Navigation, AMissingAttributeIsNoneUnlikeAMissingField) {
  const auto document = Parse("<a b='1'><c/></a>");
  const TBXMLElement* a = document->rootXMLElement();
  EXPECT_EQ(TBXML::valueOfAttributeNamed("B", a), std::nullopt);
  EXPECT_EQ(TBXML::valueOfAttributeNamed("", a), std::nullopt);
  EXPECT_EQ(TBXML::valueOfAttributeNamed("b", a->firstChild), std::nullopt);
}

TEST(Navigation, ANameIsNeverReadBehindItsEnd) {
  char name[] = {'k', 'e', 'y', '\0', 'x'};
  TBXMLElement child{};
  child.name = name;
  TBXMLElement parent{};
  parent.firstChild = &child;
  EXPECT_EQ(TBXML::childElementNamed("key", &parent), &child);
  EXPECT_EQ(TBXML::childElementNamed(std::string_view("key\0x", 5), &parent), nullptr);
  EXPECT_EQ(TBXML::childElementNamed(std::string(100000, 'k'), &parent), nullptr);
}

TEST(Navigation, ARecordWithoutANameIsNotFoundByAnyName) {
  TBXMLElement child = {};
  TBXMLElement parent = {};
  parent.firstChild = &child;
  EXPECT_EQ(TBXML::childElementNamed("", &parent), nullptr);
}
