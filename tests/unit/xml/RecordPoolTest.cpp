// The records, and the chunks that they come from.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <fstream>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "system/Memory.h"
#include "tests/support/Sanitizers.h"
#include "tests/unit/xml/TreeText.h"
#include "xml/TreeBuilder.h"

namespace faults = tavrel::system::faults;
using tavrel::system::InstructionSet;
using tavrel::test::ElementsOf;
using tavrel::test::Parse;
using tavrel::test::TreeOf;
using tavrel::xml::ForceParsing;
using tavrel::xml::ParsingWay;

namespace {

// The parser reads its text in these two ways; which instructions the index uses does not matter.
constexpr ParsingWay kPlain = {false, InstructionSet::kPlain};
constexpr ParsingWay kIndexed = {true, InstructionSet::kPlain};

constexpr TBXMLElement kZero = {};

// Whether `field` stands at word `index` of the record.
#define EXPECT_WORD(record, field, index) \
  EXPECT_EQ(offsetof(record, field), static_cast<std::size_t>(index) * sizeof(void*))

// `piece`, `count` times, between `before` and `behind`.
std::string RepeatedPieces(std::string_view before, std::string_view piece, int count,
                           std::string_view behind) {
  std::string all(before);
  while (count-- > 0) all += piece;
  return all.append(behind);
}

// <r> with `children` empty children: children + 1 records.
std::unique_ptr<TBXML> ParseChildren(int children) {
  return Parse(RepeatedPieces("<r>", "<e/>", children, "</r>"));
}

}  // namespace

TEST(Records, FieldsStandInTheirOrder) {
  EXPECT_WORD(TBXMLElement, name, 0);
  EXPECT_WORD(TBXMLElement, text, 1);
  EXPECT_WORD(TBXMLElement, firstAttribute, 2);
  EXPECT_WORD(TBXMLElement, parentElement, 3);
  EXPECT_WORD(TBXMLElement, firstChild, 4);
  EXPECT_WORD(TBXMLElement, currentChild, 5);
  EXPECT_WORD(TBXMLElement, nextSibling, 6);
  EXPECT_WORD(TBXMLElement, previousSibling, 7);
  EXPECT_EQ(sizeof(TBXMLElement), 8 * sizeof(void*));
  EXPECT_WORD(TBXMLAttribute, name, 0);
  EXPECT_WORD(TBXMLAttribute, value, 1);
  EXPECT_WORD(TBXMLAttribute, next, 2);
  EXPECT_EQ(sizeof(TBXMLAttribute), 3 * sizeof(void*));
  EXPECT_WORD(TBXMLElementBuffer, elements, 0);
  EXPECT_WORD(TBXMLElementBuffer, next, 1);
  EXPECT_WORD(TBXMLElementBuffer, previous, 2);
  EXPECT_WORD(TBXMLAttributeBuffer, attributes, 0);
  EXPECT_WORD(TBXMLAttributeBuffer, next, 1);
  EXPECT_WORD(TBXMLAttributeBuffer, previous, 2);
}

TEST(Records, ADocumentBeginsWithItsSevenFields) {
  EXPECT_WORD(TBXMLFields, rootXMLElement, 0);
  EXPECT_WORD(TBXMLFields, currentElementBuffer, 1);
  EXPECT_WORD(TBXMLFields, currentAttributeBuffer, 2);
  EXPECT_WORD(TBXMLFields, currentElement, 3);
  EXPECT_WORD(TBXMLFields, currentAttribute, 4);
  EXPECT_WORD(TBXMLFields, bytes, 5);
  EXPECT_WORD(TBXMLFields, bytesLength, 6);
  EXPECT_TRUE(std::is_signed_v<decltype(TBXMLFields::currentElement)>);
  EXPECT_EQ(sizeof(TBXMLFields::bytesLength), sizeof(void*));
  EXPECT_TRUE(std::is_standard_layout_v<TBXML>);  // so that no table of virtual functions precedes
  const TBXML document;
  EXPECT_EQ(static_cast<const void*>(&document), &document.fields());
}

TEST(RecordPool, TheFirstRecordIsIndexZeroOfTheFirstChunkAndTheRoot) {
  const auto document = Parse("<a/>");
  const TBXMLFields& fields = document->fields();
  ASSERT_NE(fields.currentElementBuffer, nullptr);
  EXPECT_EQ(fields.currentElement, 0);
  EXPECT_EQ(fields.rootXMLElement, fields.currentElementBuffer->elements);
  EXPECT_EQ(fields.currentElementBuffer->previous, nullptr);
  EXPECT_EQ(fields.currentElementBuffer->next, nullptr);
}

TEST(RecordPool, TheHundredthElementComesFromTheFirstChunk) {
  const auto document = ParseChildren(99);
  const TBXMLFields& fields = document->fields();
  EXPECT_EQ(fields.currentElement, 99);
  EXPECT_EQ(fields.currentElementBuffer->previous, nullptr);
  EXPECT_EQ(fields.rootXMLElement->currentChild, fields.currentElementBuffer->elements + 99);
}

TEST(RecordPool, TheHundredAndFirstElementComesFromASecondChunk) {
  const auto document = ParseChildren(100);
  const TBXMLFields& fields = document->fields();
  const TBXMLElementBuffer* second = fields.currentElementBuffer;
  EXPECT_EQ(fields.currentElement, 0);
  ASSERT_NE(second->previous, nullptr);
  EXPECT_EQ(second->next, nullptr);
  EXPECT_EQ(second->previous->next, second);
  EXPECT_EQ(second->previous->previous, nullptr);
  EXPECT_EQ(fields.rootXMLElement, second->previous->elements);
  EXPECT_EQ(fields.rootXMLElement->currentChild, second->elements);
}

TEST(RecordPool, TheHundredAndFirstAttributeComesFromASecondChunk) {
  for (const int count : {100, 101, 200, 201}) {
    const auto document = Parse(RepeatedPieces("<r", " a='1'", count, "/>"));
    const TBXMLFields& fields = document->fields();
    int chunks = 0;
    for (const auto* at = fields.currentAttributeBuffer; at != nullptr; at = at->previous) {
      ++chunks;
      if (at->previous != nullptr) {
        EXPECT_EQ(at->previous->next, at);
      }
    }
    EXPECT_EQ(chunks, (count + 99) / 100) << count;
    EXPECT_EQ(fields.currentAttribute, (count - 1) % 100) << count;
    EXPECT_EQ(fields.currentAttributeBuffer->next, nullptr);
  }
}

TEST(RecordPool, TheTreeReadsTheSameAcrossChunks) {
  constexpr int kElements = 1234;
  std::string text = "<r>";
  for (int i = 0; i < kElements; ++i) {
    const std::string number = std::to_string(i);
    text.append("<e n='").append(number).append("'>").append(number).append("</e>");
  }
  const auto document = Parse(text + "</r>");
  int count = 0;
  const TBXMLElement* previous = nullptr;
  for (auto* at = document->rootXMLElement()->firstChild; at != nullptr; at = at->nextSibling) {
    const std::string number = std::to_string(count++);
    ASSERT_EQ(at->text, number);
    ASSERT_EQ(at->firstAttribute->value, number);
    ASSERT_EQ(at->firstAttribute->next, nullptr);
    ASSERT_EQ(at->previousSibling, previous);
    previous = at;
  }
  EXPECT_EQ(count, kElements);
  EXPECT_EQ(ElementsOf(*document).size(), 1u + kElements);
}

TEST(RecordPool, AttributesOfOneElementContinueAcrossChunks) {
  std::string text = "<r";
  for (int i = 0; i < 350; ++i) text.append(" a").append(std::to_string(i)).append("='x'");
  const auto document = Parse(text + "/>");
  int count = 0;
  for (auto* at = document->rootXMLElement()->firstAttribute; at != nullptr; at = at->next) {
    ASSERT_EQ(at->name, std::string("a").append(std::to_string(count++)));
  }
  EXPECT_EQ(count, 350);
}

TEST(RecordPool, AttributesNeverBecomeTheRoot) {
  const auto document = Parse("<a/>");
  EXPECT_EQ(document->fields().currentAttributeBuffer, nullptr);
  EXPECT_EQ(document->fields().currentAttribute, 0);
}

TEST(RecordPool, ADocumentCostsFewAllocations) {
  const std::string text = RepeatedPieces("<r>", "<e a='1'>x</e>", 10000, "</r>");
  faults::FailAfter(1000000, false);
  const auto document = Parse(text);
  EXPECT_LE(faults::Asked(), 10000 / 100 * 2 + 3);
  faults::Stop();
}

TEST(RecordPool, ExhaustedMemoryEndsTheParsingAndKeepsTheTreeSoFar) {
  const std::string text = RepeatedPieces("<r>", "<e a='1'>x</e>", 5000, "</r>");
  std::size_t former = 0;
  for (int successes = 0;; ++successes) {
    faults::FailAfter(successes, false);
    TBXML document;
    document.initWithXMLString(text);
    const bool complete = faults::Asked() <= successes;
    faults::Stop();
    const auto elements = ElementsOf(document);
    EXPECT_GE(elements.size(), former);
    former = elements.size();
    for (const TBXMLElement* element : elements) {
      ASSERT_NE(element->name, nullptr);
      ASSERT_TRUE(element->parentElement == nullptr || element != document.rootXMLElement());
    }
    if (complete) break;
    ASSERT_LT(successes, 1000);
  }
  EXPECT_EQ(former, 5001u);
}

// Chunks of elements and of attributes fill up at different paces: either may be the one that finds
// no memory.
TEST(RecordPool, BothWaysToReadATextEndAtTheSameRecordWhenMemoryIsExhausted) {
  for (int attributes = 1; attributes <= 8; ++attributes) {
    const std::string element = RepeatedPieces("<e", " a='1'", attributes, "/>");
    const std::string text = RepeatedPieces("<r>", "<k>v</k>" + element + "<k>w</k>", 1500, "</r>");
    bool complete = false;
    for (int successes = 0; !complete; ++successes) {
      std::vector<std::string> trees;
      for (const ParsingWay way : {kPlain, kIndexed}) {
        ForceParsing(way);
        faults::FailAfter(successes, false);
        TBXML document;
        document.initWithXMLString(text);
        complete = faults::Asked() <= successes;
        faults::Stop();
        ForceParsing(std::nullopt);
        trees.push_back(TreeOf(document.rootXMLElement()));
      }
      EXPECT_TRUE(trees[0] == trees[1]) << attributes << " attributes, allocation " << successes;
      ASSERT_LT(successes, 1000);
    }
  }
}

// Runs of leaves are written before their records count as handed out.
TEST(RecordPool, RecordsThatAreNotHandedOutYetAreZero) {
  ForceParsing(kIndexed);
  // What follows the leaves is no element, and long enough to be read through the index.
  for (int leaves = 0; leaves < 250; ++leaves) {
    const auto document =
        Parse(RepeatedPieces("<r>", "<k>v</k>", leaves, "<?a?><?b?><?c?><?d?><?e?>"));
    const TBXMLFields& fields = document->fields();
    ASSERT_EQ(ElementsOf(*document).size(), 1u + static_cast<std::size_t>(leaves));
    for (std::ptrdiff_t i = fields.currentElement + 1; i < kRecordsPerChunk; ++i) {
      const TBXMLElement& unused = fields.currentElementBuffer->elements[i];
      ASSERT_EQ(std::memcmp(&unused, &kZero, sizeof unused), 0) << leaves;
    }
  }
  ForceParsing(std::nullopt);
}

// A sanitizer looks for leaks itself, and keeps what is freed for a while.
#if defined(__linux__) && !TAVREL_SANITIZED
TEST(RecordPool, ReleaseGivesBackEveryChunk) {
  const std::string text = RepeatedPieces("<r>", "<e a='1'>x</e>", 100000, "</r>");
  const auto pagesMapped = [] {
    long pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages;
  };
  static_cast<void>(Parse(text));
  const long before = pagesMapped();
  for (int i = 0; i < 50; ++i) static_cast<void>(Parse(text));
  EXPECT_LT(pagesMapped() - before, 2048);  // one of them alone takes more
}
#endif
