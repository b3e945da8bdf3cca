// Which tags make elements, and how elements hang together.
#include <gtest/gtest.h>

#include "tests/unit/xml/TreeText.h"

using tavrel::test::ElementsOf;
using tavrel::test::Parse;
using tavrel::test::TreeOf;

TEST(TBXML, DeclarationsLeaveNoRecordAndTheFirstElementIsTheRoot) {
  const auto document = Parse(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE plist PUBLIC \"-//A//DTD PLIST 1.0//EN\" \"http://example.org/a.dtd\">\n"
      "<plist version=\"1.0\"></plist>\n");
  EXPECT_EQ(TreeOf(document->rootXMLElement()), "plist(version=1.0)''");
  EXPECT_EQ(ElementsOf(*document).size(), 1u);
}

TEST(TBXML, ATextWithoutElementsHasNoRoot) {
  for (const char* text :
       {"", " ", "text", "text > text", "<?xml version=\"1.0\"?>", "<!DOCTYPE a>", "<!-- <a/> -->",
        "</a>", "<?a?></b><!-- c --><!d>", "bplist00"}) {
    const auto document = Parse(text);
    EXPECT_EQ(document->rootXMLElement(), nullptr) << text;
    EXPECT_EQ(document->fields().currentElementBuffer, nullptr) << text;
  }
}

TEST(TBXML, ClosingTagWithAnotherNameClosesTheOpenElement) {
  EXPECT_EQ(TreeOf("<a><b>x</c><d>y</a></b>"), "a[b'x' d'y']");
}

TEST(TBXML, NothingInsideAClosingTagIsRead) {
  EXPECT_EQ(TreeOf("<a><b>x</><c>y</c d=\"e\"/><f>z</ f></a>"), "a[b'x' c'y' f'z']");
}

TEST(TBXML, SurplusClosingTagIsSkipped) {
  EXPECT_EQ(TreeOf("</x></y><a>1</a></a></a>"), "a'1'");
}

TEST(TBXML, SecondTopLevelElementIsAttachedToNothing) {
  const auto document = Parse("<a>1</a><b>2<c/></b><d/>");
  EXPECT_EQ(TreeOf(document->rootXMLElement()), "a'1'");
  const auto elements = ElementsOf(*document);
  ASSERT_EQ(elements.size(), 4u);
  const TBXMLElement* second = elements[1];
  EXPECT_EQ(TreeOf(second), "b'2'[c]");
  EXPECT_EQ(second->parentElement, nullptr);
  EXPECT_EQ(second->previousSibling, nullptr);
  EXPECT_EQ(second->nextSibling, nullptr);
  EXPECT_EQ(elements[0]->nextSibling, nullptr);
  EXPECT_EQ(elements[2]->parentElement, second);
  EXPECT_EQ(TreeOf(elements[3]), "d");
}

TEST(TBXML, SiblingsAndParentsKnowEachOther) {
  const auto document = Parse("<a><b/><c></c><d/></a>");
  const TBXMLElement* a = document->rootXMLElement();
  const TBXMLElement* b = a->firstChild;
  const TBXMLElement* c = b->nextSibling;
  const TBXMLElement* d = c->nextSibling;
  EXPECT_EQ(a->parentElement, nullptr);
  EXPECT_EQ(a->currentChild, d);
  EXPECT_EQ(b->previousSibling, nullptr);
  EXPECT_EQ(c->previousSibling, b);
  EXPECT_EQ(d->previousSibling, c);
  EXPECT_EQ(d->nextSibling, nullptr);
  for (const TBXMLElement* child : {b, c, d}) {
    EXPECT_EQ(child->parentElement, a);
    EXPECT_EQ(child->firstChild, nullptr);
    EXPECT_EQ(child->currentChild, nullptr);
    EXPECT_EQ(child->firstAttribute, nullptr);
  }
}

TEST(TBXML, EmptyElementTagHasNoTextAndTheNextStartTagIsItsSibling) {
  EXPECT_EQ(TreeOf("<a><b/>x<c>y</c></a>"), "a[b c'y']");
  EXPECT_EQ(TreeOf("<a><b /><c d='e'/></a>"), "a''[b c(d=e)]");
}

TEST(TBXML, TheByteBeforeTheTagsEndDecidesWhetherItIsEmpty) {
  EXPECT_EQ(TreeOf("<a><b / >x</b></a>"), "a[b'x']");
  EXPECT_EQ(TreeOf("<a><b/c>x</b></a>"), "a[b'x']");
  EXPECT_EQ(TreeOf("<a><b//><c/></a>"), "a''[b c]");
  EXPECT_EQ(TreeOf("<a><b>x<//><c/></a>"), "a[b'x' c]");  // a '/' in front: a closing tag
}

TEST(TBXML, TabOrLineBreakBehindATagNameIsPartOfTheName) {
  EXPECT_EQ(TreeOf("<a\t><b\n/><c\r\nd='1'></c></a>"), "a\t[b\n c\r\nd='1''']");
  EXPECT_EQ(Parse("<a\nb='1' c='2'/>")->rootXMLElement()->name, std::string("a\nb='1'"));
}

TEST(TBXML, SpaceOrSlashEndsAName) {
  EXPECT_EQ(TreeOf("<a b='1'></a>"), "a(b=1)''");
  EXPECT_EQ(TreeOf("<a/b='1'></a>"), "a(b=1)''");
  EXPECT_EQ(TreeOf("<a/>"), "a");
  EXPECT_EQ(TreeOf("<a />"), "a");
}

TEST(TBXML, ANameMayHoldAnyOtherBytes) {
  EXPECT_EQ(TreeOf("<\xE6\x97\xA5:\"x'=&amp;]]></y>"), "\xE6\x97\xA5:\"x'=&amp;]]''");
}

TEST(TBXML, ATagWithoutANameIsAnElementWithAnEmptyName) {
  EXPECT_EQ(TreeOf("<>x</>"), "'x'");
  EXPECT_EQ(TreeOf("< a='1'>x</a>"), "(a=1)'x'");
  EXPECT_EQ(TreeOf("<a><>x</></a>"), "a['x']");
}

TEST(TBXML, LessThanSignInsideATagEndsIt) {
  EXPECT_EQ(TreeOf("<a<b>x</a>"), "a'b>x'");
  EXPECT_EQ(TreeOf("<a b='<c d='e'>x</a>"), "a'c d='e'>x'");
  EXPECT_EQ(TreeOf("<<a>x</a>"), "'a>x'");
  EXPECT_EQ(TreeOf("<a/<b/>"), "a");  // empty as well: what follows the '<' is no tag
}

TEST(TBXML, AClosingTagEndedByALessThanSignCloses) {
  EXPECT_EQ(TreeOf("<a><b>x</b<c>y</c></a>"), "a[b'x']");
}

TEST(TBXML, ADeclarationEndsAtItsFirstLessOrGreaterThanSign) {
  // What stands in the brackets of a document type is no tag: its '<' is spent.
  EXPECT_EQ(TreeOf("<!DOCTYPE a [<!ELEMENT b>]><a/>"), "a");
  EXPECT_EQ(TreeOf("<!DOCTYPE a [<b>]><a/>"), "a");
  EXPECT_EQ(TreeOf("<?a b > c?><a/>"), "a");
  EXPECT_EQ(TreeOf("<!><?><a/>"), "a");
}

TEST(TBXML, ACDataSectionInsideATagHidesLessAndGreaterThanSigns) {
  EXPECT_EQ(TreeOf("<a<![CDATA[<>]]>b>x</a>"), "a<![CDATA[<>]]>b'x'");
  EXPECT_EQ(TreeOf("<a><b></b<![CDATA[>]]>><c/></a>"), "a[b'' c]");
  EXPECT_EQ(TreeOf("<?a <![CDATA[>]]><![CDATA[<]]> ?><b/>"), "b");
}

TEST(TBXML, DeeplyNestedElementsAreParsed) {
  std::string text;
  for (int i = 0; i < 100000; ++i) text += "<a>";
  const auto document = Parse(text + "x");
  const TBXMLElement* element = document->rootXMLElement();
  int depth = 1;
  for (; element->firstChild != nullptr; element = element->firstChild) ++depth;
  EXPECT_EQ(depth, 100000);
  EXPECT_STREQ(element->text, "x");
}

TEST(TBXML, AnUnclosedElementKeepsItsPlace) {
  EXPECT_EQ(TreeOf("<a><b>x<c>y"), "a''[b'x'[c'y']]");
}

TEST(TBXML, AZeroByteInsideTheTextEndsTheParsing) {
  using namespace std::string_view_literals;
  const auto document = Parse("<a><b>x</b>\0<c/></a>"sv);
  EXPECT_EQ(TreeOf(document->rootXMLElement()), "a[b'x']");
  EXPECT_EQ(document->fields().bytesLength, 20);
  EXPECT_EQ(TreeOf("\0<a/>"sv), "none");
  EXPECT_EQ(TreeOf("<a\0/>"sv), "none");
  EXPECT_EQ(TreeOf("<a>x\0y</a>"sv), "a'x'");
}
