// The parser beside its literal form, on documents made of everything that it takes for special.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/reference/LiteralPass.h"
#include "tests/support/InstructionSets.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"
#include "tests/unit/xml/Sequences.h"
#include "tests/unit/xml/TreeText.h"
#include "xml/StructuralIndex.h"
#include "xml/TreeBuilder.h"

using namespace tavrel::test;
using tavrel::xml::ForceParsing;
using tavrel::xml::ParsingWay;

namespace {

const std::vector<ParsingWay>& AllWays() {
  using tavrel::system::InstructionSet;
  static const std::vector<ParsingWay> ways = [] {
    std::vector<ParsingWay> all = {{false, InstructionSet::kPlain}};
    for (const InstructionSet set : SetsForIndex()) all.push_back({true, set});
    return all;
  }();
  return ways;
}

// Compares what the records of two documents lead to: strings that stand at the same place and hold
// the same bytes, and links to records that stand for the same tag. (Bytes that no record leads to
// mean nothing, like those behind the end of a value that became shorter.)
class Comparison {
 public:
  Comparison(const TBXMLFields& a, const TBXMLFields& b) : a_(a), b_(b) {}

  // Where they differ; empty when they do not.
  [[nodiscard]] std::string Difference() const {
    const std::vector<const TBXMLElement*> ours = ElementsOf(a_);
    const std::vector<const TBXMLElement*> theirs = ElementsOf(b_);
    if (ours.size() != theirs.size()) return "number of elements";
    for (std::size_t i = 0; i < ours.size(); ++i) {
      if (!SameElement(*ours[i], *theirs[i])) return "element " + std::to_string(i);
    }
    if (!SameRecord(a_.rootXMLElement, b_.rootXMLElement)) return "root";
    return "";
  }

 private:
  [[nodiscard]] bool SameString(const char* a, const char* b) const {
    if (a == nullptr || b == nullptr) return a == b;
    return a - a_.bytes == b - b_.bytes && std::string_view(a) == b;
  }

  // No two records have their names at the same place.
  template <class Record>
  [[nodiscard]] bool SameRecord(const Record* a, const Record* b) const {
    if (a == nullptr || b == nullptr) return a == b;
    return SameString(a->name, b->name);
  }

  [[nodiscard]] bool SameElement(const TBXMLElement& a, const TBXMLElement& b) const {
    return SameString(a.name, b.name) && SameString(a.text, b.text) &&
           SameAttributes(a.firstAttribute, b.firstAttribute) &&
           SameRecord(a.parentElement, b.parentElement) && SameRecord(a.firstChild, b.firstChild) &&
           SameRecord(a.currentChild, b.currentChild) && SameRecord(a.nextSibling, b.nextSibling) &&
           SameRecord(a.previousSibling, b.previousSibling);
  }

  [[nodiscard]] bool SameAttributes(const TBXMLAttribute* a, const TBXMLAttribute* b) const {
    for (; a != nullptr && b != nullptr; a = a->next, b = b->next) {
      if (!SameString(a->name, b->name) || !SameString(a->value, b->value)) return false;
    }
    return a == b;
  }

  const TBXMLFields& a_;
  const TBXMLFields& b_;
};

void ExpectSame(std::string_view text) {
  std::string bytes(text);
  tavrel::reference::LiteralPass literal;
  literal.Run(bytes.data());
  for (const ParsingWay& way : AllWays()) {
    ForceParsing(way);
    const auto document = Parse(text);
    ASSERT_EQ(Comparison(document->fields(), literal.fields()).Difference(), "")
        << (way.indexed ? "indexed: " : "plain: ") << testing::PrintToString(std::string(text));
    ASSERT_EQ(document->fields().bytesLength, static_cast<std::ptrdiff_t>(text.size()));
  }
  ForceParsing(std::nullopt);
}

// The same in the middle of other tags, far enough from the end for the index to be used.
void ExpectSameInside(const std::string& text) {
  ExpectSame(text);
  ExpectSame(std::string("<r><k>v</k>").append(text).append("<k>v</k></r><k>v</k>"));
}

const Alphabet& Documents() {
  static const Alphabet alphabet = {
      "<![CDATA[", "<![CDATA[", "]]>",      "]]>",  "<!--", "-->", "</", "</a>", "/>", ">",
      ">",         "<",         "<a",       "<b ",  "<c/>", "\"",  "\"", "'",    "'",  "=",
      " ",         " ",         "\t",       "\n",   "\r",   "\v",  "\f", "/",    "]",  "]]",
      "<![CD",     "ATA[",      "<!-",      "--",   "?",    "<?",  "!",  "x",    "y",  "d=",
      "e='",       "f=\"",      "\xC3\xA9", "\x85", "\xA0", "&lt;"};
  return alphabet;
}

const Alphabet& Sections() {
  static const Alphabet alphabet = {"<![CDATA[", "<![CDATA[", "<![CDATA[", "]]>",   "]]>", "]]>",
                                    "]",         "<",         ">",         " ",     "x",   "yz",
                                    "<a>",       "</a>",      "<b/>",      "<!-- ", "-->"};
  return alphabet;
}

// Pieces of "<name>text</name>", the shape that most elements of a library file have.
const Alphabet& Leaves() {
  static const Alphabet alphabet = {
      "<k>",    "<key>",   "<eightone>", "<ninechars>", "<string>", "<k >", "<k/>",
      "</k>",   "</",      "</string>",  ">",           "<",        "/",    "x",
      "text",   "a b",     " ",          "\n",          "\x01",     "\x7F", "\xC3\xA9",
      "<!k>",   "<?k>",    "<!-- c -->", "=",           "'",        "<>",   "<k\t>",
      "<dict>", "</dict>", "<k i='1'>"};
  return alphabet;
}

// What may stand inside a start tag.
const Alphabet& Tags() {
  static const Alphabet alphabet = {"<![CDATA[", "<![CDATA[", "]]>", "]]>",  "\"",    "\"",  "'",
                                    "'",         "=",         " ",   "b",    "c=",    "d='", "e=\"",
                                    "]",         "/",         "\n",  "<![C", "DATA[", "<",   ">"};
  return alphabet;
}

}  // namespace

TEST(Differential, EveryShortDocumentGivesTheSameTree) {
  const Alphabet bytes = {"<", ">", "/", "!", "a", " ", "=", "'"};
  ForEverySequence(bytes, kSlow ? 4 : 5, ExpectSameInside);
}

TEST(Differential, EveryShortSequenceOfMarkersGivesTheSameTree) {
  const Alphabet pieces = {"<a>", "<![CDATA[", "]]>", "</a>", "<!--", "-->", "x", " ", "]", ">"};
  ForEverySequence(pieces, kSlow ? 3 : 4, ExpectSameInside);
}

TEST(Differential, EveryShortTagGivesTheSameTree) {
  const Alphabet pieces = {"<![CDATA[", "]]>", "'", "\"", "=", " ", "x", "/"};
  ForEverySequence(pieces, kSlow ? 4 : 5,
                   [](const std::string& inside) { ExpectSameInside("<a " + inside + ">x</a>"); });
}

TEST(Differential, RandomDocumentsGiveTheSameTree) {
  Random random(19991231);
  for (int round = 0; round < Rounds(30000) && !HasFatalFailure(); ++round) {
    ExpectSame(random.Text(Documents(), random.Below(60)));
  }
}

TEST(Differential, EveryPrefixOfARandomDocumentGivesTheSameTree) {
  Random random(20011009);
  for (int round = 0; round < Rounds(1000); ++round) {
    const Alphabet& alphabet = round % 3 == 0 ? Sections() : round % 3 == 1 ? Tags() : Documents();
    const std::string text =
        (round % 3 == 1 ? "<a " : "") + random.Text(alphabet, random.Below(60));
    for (std::size_t length = 0; length <= text.size() && !HasFatalFailure(); ++length) {
      ExpectSame(std::string_view(text).substr(0, length));
    }
  }
}

TEST(Differential, RandomRunsOfSectionsGiveTheSameTree) {
  Random random(20030428);
  for (int round = 0; round < Rounds(30000) && !HasFatalFailure(); ++round) {
    ExpectSame("<r>" + random.Text(Sections(), random.Below(40)) + "</r>");
  }
}

TEST(Differential, RandomLeavesGiveTheSameTree) {
  Random random(20050118);
  for (int round = 0; round < Rounds(40000) && !HasFatalFailure(); ++round) {
    ExpectSame("<r>" + random.Text(Leaves(), random.Below(60)) + "</r>");
  }
}

TEST(Differential, RandomTagsGiveTheSameTree) {
  Random random(20070629);
  for (int round = 0; round < Rounds(30000) && !HasFatalFailure(); ++round) {
    ExpectSame("<r " + random.Text(Tags(), random.Below(40)) + ">x</r>");
  }
}

TEST(Differential, LargeRandomDocumentsGiveTheSameTree) {
  Random random(20100403);
  // Mostly tags that are in order, so that trees become deep and wide and chunks fill up.
  const Alphabet alphabet = {"<a>",
                             "<b c='1' d=\"<![CDATA[>]]>\">",
                             "<e/>",
                             "<f g = 'h' />",
                             "</a>",
                             "</b>",
                             " text ",
                             "\n\t",
                             "<![CDATA[<x> & ]]>",
                             "<!-- c -->",
                             "&amp;",
                             "<?p?>",
                             "h\xC3\xA4ndel"};
  for (int round = 0; round < Rounds(200) && !HasFatalFailure(); ++round) {
    ExpectSame(random.Text(alphabet, random.Below(2000)));
  }
}

TEST(Differential, DocumentsWithZeroBytesGiveTheSameTree) {
  using namespace std::string_view_literals;
  Alphabet alphabet = Documents();
  alphabet.push_back("\0"sv);
  Random random(20121129);
  for (int round = 0; round < Rounds(20000) && !HasFatalFailure(); ++round) {
    ExpectSame(random.Text(alphabet, random.Below(60)));
  }
}

TEST(Differential, RandomBytesGiveTheSameTree) {
  Random random(20150630);
  for (int round = 0; round < Rounds(20000) && !HasFatalFailure(); ++round) {
    ExpectSame("<a b='" + random.Bytes(random.Below(300)) + "'>" + random.Bytes(random.Below(300)));
  }
}
