// Every way to parse builds the tree of the plain one.
#include <gtest/gtest.h>
#if defined(__linux__)
#include <sys/prctl.h>
#endif

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/InstructionSets.h"
#include "tests/support/Sanitizers.h"
#include "xml/StructuralIndex.h"
#include "xml/TBXML.h"
#include "xml/TreeBuilder.h"

namespace {

using tavrel::system::InstructionSet;
using tavrel::test::Rounds;
using tavrel::test::SetsForIndex;
using tavrel::xml::ForceParsing;
using tavrel::xml::IndexFunctionFor;
using tavrel::xml::ParsingWay;

std::vector<std::uint32_t> Positions(InstructionSet set, std::string_view text) {
  // Exactly as long as the text: a read behind it is noticed by the sanitizer.
  const std::vector<char> bytes(text.begin(), text.end());
  std::vector<std::uint32_t> positions(text.size() + tavrel::xml::kIndexSlack);
  positions.resize(IndexFunctionFor(set)(bytes.data(), bytes.size(), 1000, positions.data()));
  return positions;
}

// The whole tree as text, in the order of the records' making.
std::string Dump(const TBXML& document) {
  std::string dump;
  const TBXMLFields& fields = document.fields();
  const TBXMLElementBuffer* chunk = fields.currentElementBuffer;
  const auto place = [&](const char* text) {
    return text == nullptr ? std::string("none") : std::to_string(text - fields.bytes);
  };
  while (chunk != nullptr && chunk->previous != nullptr) chunk = chunk->previous;
  for (; chunk != nullptr; chunk = chunk->next) {
    const std::ptrdiff_t count = chunk->next == nullptr ? fields.currentElement + 1 : 100;
    for (std::ptrdiff_t i = 0; i < count; ++i) {
      const TBXMLElement& element = chunk->elements[i];
      const auto other = [&](const TBXMLElement* e) {
        return e == nullptr ? std::string("none") : place(e->name);
      };
      dump += place(element.name) + ' ' + place(element.text) + ' ' + other(element.parentElement) +
              ' ' + other(element.firstChild) + ' ' + other(element.currentChild) + ' ' +
              other(element.nextSibling) + ' ' + other(element.previousSibling);
      for (const TBXMLAttribute* a = element.firstAttribute; a != nullptr; a = a->next) {
        dump += " [" + place(a->name) + ' ' + place(a->value) + ']';
      }
      dump += '\n';
    }
  }
  dump.append(fields.bytes, static_cast<std::size_t>(fields.bytesLength));
  return dump;
}

std::string DumpOf(const std::string& text, ParsingWay way) {
  ForceParsing(way);
  TBXML document;
  document.initWithXMLString(text);
  ForceParsing(std::nullopt);
  return Dump(document);
}

// Mostly leaves, as in a library file, with everything special now and then.
std::string RandomDocument(std::mt19937& random, std::size_t pieces, bool mostlyLeaves) {
  static constexpr std::string_view kLeaves[] = {
      "<key>Name</key>", "<string>a&#38;b</string>", "<integer>7</integer>",
      "<k></k>",         "<eightone>x</eightone>",   "<ninechars>x</ninechars>"};
  static constexpr std::string_view kSpecial[] = {
      "<dict>",     "</dict>",   "<true/>",    "<a b='c'>",  "</a>",      "<a b=\"<![CDATA[>]]>\">",
      "<!-- c -->", "<![CDATA[", "]]>",        "<?x?>",      "<!D>",      ">",
      "<",          " ",         "text",       "</ >",       "<k> x</k>", "<k>x\n</k>",
      "<>",         "<//>",      "<k/x>y</k>", "<!k>y</k>",  "\t",        "<k>\x01</k>",
      "<?k>y</k>",  "<k>>y</k>", "<k>y</k",    "<k\n>y</k>", "<k >y</k>", "<kkkkkkk/>y</k>"};
  std::string text = "<plist>";
  for (std::size_t i = 0; i < pieces; ++i) {
    const bool leaf = random() % 10 < (mostlyLeaves ? 9 : 3);
    text +=
        leaf ? kLeaves[random() % std::size(kLeaves)] : kSpecial[random() % std::size(kSpecial)];
  }
  return text;
}

TEST(StructuralIndex, EverySetFindsTheSamePositions) {
  std::mt19937 random(1);
  for (int round = 0; round < Rounds(400); ++round) {
    std::string text(random() % 300, ' ');
    const std::uint64_t density = random() % 100;
    for (char& c : text) {
      c = random() % 100 < density ? (random() % 2 == 0 ? '<' : '>') : static_cast<char>(random());
    }
    const std::vector<std::uint32_t> expected = Positions(InstructionSet::kPlain, text);
    for (const InstructionSet set : SetsForIndex()) EXPECT_EQ(Positions(set, text), expected);
  }
}

TEST(StructuralIndex, ABlockOfNothingButTagsFitsIntoTheList) {
  const std::string text(20000, '<');
  for (const InstructionSet set : SetsForIndex()) {
    const std::string dump = DumpOf("<r>" + text, {true, set});
    EXPECT_EQ(dump, DumpOf("<r>" + text, {false, InstructionSet::kPlain}));
  }
}

TEST(TreeBuilder, EverySetBuildsThePlainTree) {
  std::mt19937 random(2);
  for (int round = 0; round < Rounds(3000); ++round) {
    const std::string text = RandomDocument(random, 1 + random() % 60, round % 2 == 0);
    const std::string expected = DumpOf(text, {false, InstructionSet::kPlain});
    for (const InstructionSet set : SetsForIndex()) {
      ASSERT_EQ(DumpOf(text, {true, set}), expected) << text;
    }
  }
}

TEST(TreeBuilder, EverySetBuildsThePlainTreeOverManyBlocks) {
  std::mt19937 random(3);
  for (int round = 0; round < Rounds(40); ++round) {
    std::string text = RandomDocument(random, 4000, true);
    // A long run without any tag makes the index jump.
    text.insert(text.size() / 2, "<!--" + std::string(random() % 30000, '.') + "-->");
    const std::string expected = DumpOf(text, {false, InstructionSet::kPlain});
    for (const InstructionSet set : SetsForIndex()) {
      ASSERT_EQ(DumpOf(text, {true, set}), expected);
    }
  }
}

// Leaves do not count, wherever in a chunk of records they stand.
TEST(InstructionSets, AllListTheSameDictionaries) {
  std::string text = "<plist><dict><dict>";
  for (int i = 0; i < 500; ++i) text += "<key>1</key><dict><key>Name</key><true/></dict>";
  text += "</dict></dict></plist>";
  std::vector<ParsingWay> ways = {{false, InstructionSet::kPlain}};
  for (const InstructionSet set : SetsForIndex()) ways.push_back({true, set});
  for (const ParsingWay way : ways) {
    ForceParsing(way);
    TBXML document;
    document.listElementsOfLevel(4);
    document.initWithXMLString(text);
    ForceParsing(std::nullopt);
    std::vector<const TBXMLElement*> dictionaries;
    const TBXMLElement* tracks = document.rootXMLElement()->firstChild->firstChild;
    for (const TBXMLElement* key = tracks->firstChild; key != nullptr;) {
      dictionaries.push_back(key->nextSibling);
      key = key->nextSibling->nextSibling;
    }
    const auto listed = document.listedElements();
    EXPECT_TRUE(std::equal(listed.begin(), listed.end(), dictionaries.begin(), dictionaries.end()));
  }
}

TEST(ListedElements, AreThoseOfTheWantedLevelThatHaveChildren) {
  const std::string text = "<a><b><c/></b><b/><b>x</b><b><c>y</c></b></a>";
  const std::vector<std::vector<std::string>> expected = {{}, {"a"}, {"b", "b"}, {}, {}};
  for (std::size_t level = 0; level < expected.size(); ++level) {
    TBXML document;
    document.listElementsOfLevel(level);
    document.initWithXMLString(text);
    std::vector<std::string> names;
    for (const TBXMLElement* element : document.listedElements()) names.push_back(element->name);
    EXPECT_EQ(names, expected[level]) << level;
  }
}

TEST(ListedElements, AreThoseOfTheLastTextAndNoneUnlessAskedFor) {
  TBXML document;
  document.initWithXMLString("<a><b/></a>");
  EXPECT_TRUE(document.listedElements().empty());
  document.listElementsOfLevel(1);
  document.init();
  document.initWithXMLString("<a><b/></a>");
  ASSERT_EQ(document.listedElements().size(), 1u);
  EXPECT_EQ(document.listedElements()[0], document.rootXMLElement());
  document.initWithXMLString("<a/>");
  EXPECT_TRUE(document.listedElements().empty());
}

#if defined(__linux__)
TEST(TreeBuilder, BuildsTheSameTreeWhereHugePagesAreRefused) {
  std::mt19937 random(4);
  const std::string text = "<!--" + std::string(std::size_t{5} << 20, '.') + "--><r>" +
                           RandomDocument(random, 80000, true);
  ASSERT_GT(text.size(), std::size_t{4} << 20);  // several huge pages
  const std::string expected = DumpOf(text, {true, tavrel::system::WidestSet()});
  ASSERT_EQ(prctl(PR_SET_THP_DISABLE, 1, 0, 0, 0), 0);
  const std::string without = DumpOf(text, {true, tavrel::system::WidestSet()});
  EXPECT_EQ(prctl(PR_SET_THP_DISABLE, 0, 0, 0, 0), 0);
  EXPECT_TRUE(without == expected);
}
#endif

}  // namespace
