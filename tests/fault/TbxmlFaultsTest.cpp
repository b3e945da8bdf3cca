// Documents that are made while memory runs out: what is there of their tree is well-formed.
#include <gtest/gtest.h>

#include <new>
#include <string>

#include "codecs/Gzip.h"
#include "system/Resources.h"
#include "tests/fault/FailingNew.h"
#include "tests/support/TemporaryHome.h"
#include "text/FileUrl.h"
#include "xml/TBXML.h"

using namespace tavrel::test;
using tavrel::system::ByteBuffer;

namespace {

// More elements and attributes than one chunk of records holds, and than the first block holds.
std::string ManyElements() {
  std::string text = "<root a='1' b='2'>";
  for (int i = 0; i < 1200; ++i) text += "<item number='1' name=\"x\">text<empty/></item>";
  return text + "</root>";
}

void CheckElement(const TBXMLElement* element, const TBXMLElement* parent, int& count) {
  ASSERT_NE(element->name, nullptr);
  ASSERT_EQ(element->parentElement, parent);
  for (const TBXMLAttribute* a = element->firstAttribute; a != nullptr; a = a->next) {
    ASSERT_TRUE(a->name != nullptr && a->value != nullptr);
  }
  ++count;
  const TBXMLElement* previous = nullptr;
  for (const TBXMLElement* child = element->firstChild; child != nullptr;
       child = child->nextSibling) {
    ASSERT_EQ(child->previousSibling, previous);
    CheckElement(child, element, count);
    previous = child;
  }
  ASSERT_EQ(element->currentChild, previous);
}

// The number of elements of a document, which may be none or have no tree.
int CountElements(const TBXML* document) {
  int count = 0;
  if (document == nullptr || document->rootXMLElement() == nullptr) return 0;
  CheckElement(document->rootXMLElement(), nullptr, count);
  return count;
}

// Makes documents with every allocation failing; the whole one must have `elements` elements.
template <class Make>
void ExpectPartsOfATree(int elements, Make make) {
  int most = 0;
  WithEachAllocationFailing(2, [&] {
    std::unique_ptr<TBXML> document;
    try {
      document = Inside(make);
    } catch (const std::bad_alloc&) {
      // Those that take a name or a URL may throw this, and nothing else.
    }
    most = std::max(most, CountElements(document.get()));
    Inside([&document] {
      document.reset();
      return 0;
    });
  });
  EXPECT_EQ(most, elements);
}

constexpr int kManyElements = 2401;

}  // namespace

TEST(TBXMLFaults, FromAStringLeavePartOfATree) {
  const std::optional<std::string> text = ManyElements();
  ExpectPartsOfATree(kManyElements, [&text] { return TBXML::tbxmlWithXMLString(text); });
}

TEST(TBXMLFaults, FromBytesLeavePartOfATree) {
  const ByteBuffer bytes = ByteBuffer::Copy(ManyElements());
  ExpectPartsOfATree(kManyElements, [&bytes] { return TBXML::tbxmlWithXMLData(bytes); });
}

TEST(TBXMLFaults, FromAUrlLeavePartOfATree) {
  const TemporaryHome home;
  home.WriteLibrary(ManyElements());
  const std::string url = tavrel::text::FileUrlOfPath(home.LibraryFile());
  ExpectPartsOfATree(kManyElements, [&url] { return TBXML::tbxmlWithURL(url); });
}

TEST(TBXMLFaults, FromAResourceLeavePartOfATree) {
  const TemporaryHome home;
  tavrel::system::SetResourceFolder(home.path());
  WriteFile(home.path() + "/plain.xml", ManyElements());
  WriteFile(home.path() + "/packed.xml.gz",
            tavrel::gzipDeflate(ByteBuffer::Copy(ManyElements())).view());
  ExpectPartsOfATree(kManyElements, [] { return TBXML::tbxmlWithXMLFile("plain.xml"); });
  ExpectPartsOfATree(kManyElements, [] { return TBXML::tbxmlWithXMLFile("plain", "xml"); });
  ExpectPartsOfATree(kManyElements, [] { return TBXML::tbxmlWithXMLFile("packed.xml.gz"); });
  tavrel::system::SetResourceFolder("");
}

TEST(TBXMLFaults, OfASecondTextReleaseTheFirst) {
  WithEachAllocationFailing(2, [] {
    const auto document = Inside([] { return TBXML::alloc(); });
    if (document == nullptr) return;
    const std::optional<std::string> first = ManyElements();
    const std::optional<std::string> second = "<a><b/></a>";
    Inside([&] { return document->initWithXMLString(first); });
    Inside([&] { return document->initWithXMLString(second); });
    EXPECT_LE(CountElements(document.get()), 2);
  });
}

TEST(TBXMLFaults, OfReadingTextsThrowNothingButExhaustedMemory) {
  const auto document = TBXML::tbxmlWithXMLString(
      "<an_element_with_a_rather_long_name an_attribute_with_a_rather_long_name='and a value that "
      "is longer still'>a text that no string object holds in itself"
      "</an_element_with_a_rather_long_name>");
  const TBXMLElement* root = document->rootXMLElement();
  WithEachAllocationFailing(3, [root] {
    try {
      Inside([root] {
        (void)TBXML::elementName(root);
        (void)TBXML::textForElement(root);
        (void)TBXML::attributeName(root->firstAttribute);
        (void)TBXML::attributeValue(root->firstAttribute);
        return TBXML::valueOfAttributeNamed("an_attribute_with_a_rather_long_name", root);
      });
    } catch (const std::bad_alloc&) {
    }
  });
}
