// The pass beside its literal form, on documents made of everything that it takes for special.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "unit/support/Random.h"
#include "unit/support/Sanitizers.h"
#include "unit/xml/LiteralPass.h"
#include "unit/xml/Sequences.h"
#include "unit/xml/TreeText.h"
#include "xml/DocumentPass.h"
#include "xml/TagIndex.h"

using namespace tavrel::test;

namespace {

const std::vector<PassChoice>& AllPasses() {
  using tavrel::xml::InstructionSet;
  static const std::vector<PassChoice> passes = [] {
    std::vector<PassChoice> all = {{false, InstructionSet::kPlain}};
    for (const InstructionSet set : {InstructionSet::kPlain, InstructionSet::kBaseline,
                                     InstructionSet::kAvx2, InstructionSet::kAvx512}) {
      if (tavrel::xml::IsSupported(set)) all.push_back({true, set});
    }
    return all;
  }();
  return passes;
}

// Where a string stands in the document's buffer.
std::size_t OffsetOf(const TBXML& document, const char* string) {
  return string == nullptr ? kNone : static_cast<std::size_t>(string - document.fields().bytes);
}

std::vector<LiteralElement> AsLiteral(const TBXML& document) {
  const std::vector<const TBXMLElement*> records = ElementsOf(document);
  std::unordered_map<const TBXMLElement*, std::size_t> indexes = {{nullptr, kNone}};
  for (std::size_t i = 0; i < records.size(); ++i) indexes[records[i]] = i;
  std::vector<LiteralElement> elements;
  for (const TBXMLElement* record : records) {
    LiteralElement& element = elements.emplace_back();
    element.name = OffsetOf(document, record->name);
    element.text = OffsetOf(document, record->text);
    for (auto* at = record->firstAttribute; at != nullptr; at = at->next) {
      element.attributes.push_back({OffsetOf(document, at->name), OffsetOf(document, at->value)});
    }
    element.parentElement = indexes.at(record->parentElement);
    element.firstChild = indexes.at(record->firstChild);
    element.currentChild = indexes.at(record->currentChild);
    element.nextSibling = indexes.at(record->nextSibling);
    element.previousSibling = indexes.at(record->previousSibling);
  }
  return elements;
}

bool Same(const LiteralElement& a, const LiteralElement& b) {
  if (a.attributes.size() != b.attributes.size()) return false;
  for (std::size_t i = 0; i < a.attributes.size(); ++i) {
    if (a.attributes[i].name != b.attributes[i].name) return false;
    if (a.attributes[i].value != b.attributes[i].value) return false;
  }
  return a.name == b.name && a.text == b.text && a.parentElement == b.parentElement &&
         a.firstChild == b.firstChild && a.currentChild == b.currentChild &&
         a.nextSibling == b.nextSibling && a.previousSibling == b.previousSibling;
}

// Where the document and its literal form differ, in a record or in a byte of the buffer that means
// something; empty when they do not.
std::string Difference(std::string_view text, const LiteralPass& literal) {
  const auto document = Parse(text);
  const std::vector<LiteralElement> elements = AsLiteral(*document);
  if (elements.size() != literal.elements().size()) return "number of elements";
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (!Same(elements[i], literal.elements()[i])) return "element " + std::to_string(i);
  }
  const TBXMLElement* root = document->rootXMLElement();
  if (elements.empty() ? root != nullptr : root != ElementsOf(*document)[0]) return "root";
  for (std::size_t i = 0; i <= text.size(); ++i) {
    if (literal.IsInUse(i) && document->fields().bytes[i] != literal.bytes()[i]) {
      return "byte " + std::to_string(i);
    }
  }
  return document->fields().bytesLength == static_cast<std::ptrdiff_t>(text.size()) ? "" : "length";
}

void ExpectSame(std::string_view text) {
  const LiteralPass literal(text);
  for (const PassChoice& choice : AllPasses()) {
    ForcePass(choice);
    ASSERT_EQ(Difference(text, literal), "")
        << (choice.indexed ? "indexed: " : "plain: ") << testing::PrintToString(std::string(text));
  }
  ForcePass(std::nullopt);
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
  ForEverySequence(bytes, kSanitized ? 4 : 5, ExpectSameInside);
}

TEST(Differential, EveryShortSequenceOfMarkersGivesTheSameTree) {
  const Alphabet pieces = {"<a>", "<![CDATA[", "]]>", "</a>", "<!--", "-->", "x", " ", "]", ">"};
  ForEverySequence(pieces, kSanitized ? 3 : 4, ExpectSameInside);
}

TEST(Differential, EveryShortTagGivesTheSameTree) {
  const Alphabet pieces = {"<![CDATA[", "]]>", "'", "\"", "=", " ", "x", "/"};
  ForEverySequence(pieces, kSanitized ? 4 : 5,
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
