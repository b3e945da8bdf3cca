#include "xml/TreeBuilder.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "system/Prefetch.h"
#include "xml/AttributeScanner.h"
#include "xml/ByteScan.h"
#include "xml/CDataSections.h"
#include "xml/Leaf.h"

namespace tavrel::xml {
namespace {

constinit std::optional<ParsingWay> forcedWay;

char* FirstOf(char* from, char a, char b) noexcept {
  while (*from != a && *from != b && *from != '\0') ++from;
  return from;
}

// Takes whitespace off both ends. The text ends at its zero byte, and not always at the closing
// tag: an empty child or a declaration may have ended it before.
void TrimText(TBXMLElement& element) noexcept {
  while (IsWhitespace(*element.text)) ++element.text;
  char* end = element.text + std::strlen(element.text);
  while (end > element.text + 1 && IsWhitespace(end[-1])) *--end = '\0';
}

// Hangs the siblings from `first` to `last`, which are linked among themselves, on `parent`.
void AppendChildren(TBXMLElement* parent, TBXMLElement* first, TBXMLElement* last) noexcept {
  TBXMLElement* const previous = parent->currentChild;
  (previous == nullptr ? parent->firstChild : previous->nextSibling) = first;
  first->previousSibling = previous;
  first->parentElement = parent;
  last->nextSibling = nullptr;
  parent->currentChild = last;
}

}  // namespace

void ForceParsing(std::optional<ParsingWay> way) noexcept {
  forcedWay = way;
}

void BuildTree(DocumentTree& tree, std::size_t textLength) noexcept {
  char* text = tree.fields.bytes;
  TreeBuilder builder(tree, text, text + textLength);
  const ParsingWay way = forcedWay ? *forcedWay : ParsingWay{true, system::WidestSet()};
  if (way.indexed) {
    builder.BuildIndexed(way.set);
  } else {
    builder.Build();
  }
}

void TreeBuilder::Build() noexcept {
  char* open = nullptr;
  do {
    open = FindByte(position_, end_, '<');
  } while (open != nullptr && TakeMarkup(open, nullptr));
}

void TreeBuilder::BuildIndexed(system::InstructionSet set) noexcept {
  if (static_cast<std::size_t>(end_ - text_) > StructuralIndex::kLongest) return Build();
  StructuralIndex index(text_, end_, set);
  while (index.Has(StructuralIndex::kMostAhead)) {
    TakeLeaves(index);
    if (index.Left() < 2) continue;
    const std::uint32_t* marks = index.Next();
    char* open = text_ + marks[0];
    if (*open == '>') {  // in character data
      index.Skip(1);
    } else {
      if (!TakeMarkup(open, text_ + marks[1])) return;
      index.SkipTo(static_cast<std::size_t>(position_ - text_));
    }
  }
  Build();  // what is left holds too few
}

// Handles as many leaves as come next, while the index and the newest chunk last; perhaps none.
//
// Everything is kept in variables of its own on the way: the zero bytes might be written anywhere,
// for all the compiler knows, and would make it read members again and again.
void TreeBuilder::TakeLeaves(StructuralIndex& index) noexcept {
  TBXMLElement* const parent = openElement_;
  if (parent == nullptr) return;
  TBXMLFields& fields = tree_.fields;
  TBXMLElement* const chunk = fields.currentElementBuffer->elements;
  TBXMLElement* const first = chunk + fields.currentElement + 1;
  TBXMLElement* element = first;

  constexpr std::ptrdiff_t kAhead = 16 * std::ptrdiff_t{sizeof(TBXMLElement)};
  char* const text = text_;
  const std::uint32_t* marks = index.Next();
  // As many as the index shows as a whole and the chunk has records for.
  const auto most = std::min(index.Left() / Leaf::kMarks - 1, chunk + kRecordsPerChunk - first);
  for (TBXMLElement* const end = first + most; element < end; ++element, marks += Leaf::kMarks) {
    const Leaf leaf(text, marks);
    if (!leaf.IsThere()) break;
    system::FetchToWrite(element, kAhead);
    element->name = leaf.open + 1;
    element->text = leaf.nameEnd + 1;
    element->parentElement = parent;
    // Siblings stand side by side; not so the first and the last one, which AppendChildren() sees to.
    element->nextSibling = element + 1;
    element->previousSibling = element - 1;
    leaf.EndTexts();
  }
  if (element == first) return;

  TBXMLElement* const last = element - 1;
  AppendChildren(parent, first, last);
  parent->text = nullptr;  // as for every parent of an element that a tag closes
  fields.currentElement = last - chunk;
  position_ = text + marks[-1] + 1;
  index.Skip(static_cast<std::size_t>(marks - index.Next()));
}

bool TreeBuilder::TakeMarkup(char* open, char* nextMark) noexcept {
  if (open[1] == '!') {
    if (StartsWith(open, end_, kCommentOpener)) return SkipComment(open);
    if (StartsWith(open, end_, kSectionOpener)) return TakeSections(open);
  }

  char* close = nextMark != nullptr && *nextMark == '>' ? nextMark : FindTagEnd(open + 1);
  if (close == nullptr) return false;
  *close = '\0';
  *open = '\0';  // ends the text of the open element, or of its last child
  position_ = close + 1;
  switch (open[1]) {
    case '?':
    case '!':
      return true;  // a declaration leaves no record
    case '/':
      CloseElement();
      return true;
    default:
      return OpenElement(open, close);
  }
}

// The comment's '<' stays: inside character data, a comment is part of the text. This is
// deliberate.
bool TreeBuilder::SkipComment(char* open) noexcept {
  char* commentEnd = FindNearText(open, end_, kCommentEnd);
  if (commentEnd == nullptr) return false;
  position_ = commentEnd + kCommentEnd.size();
  return true;
}

bool TreeBuilder::TakeSections(char* open) noexcept {
  char* nextTag = JoinSections(open, end_);
  if (nextTag == nullptr) return false;
  position_ = nextTag;
  return true;
}

// The '>' of the tag, or the '<' that ends it too; one that opens a CDATA section, in an attribute
// value, does not. Null when there is neither before the text ends.
char* TreeBuilder::FindTagEnd(char* from) noexcept {
  char* close = FirstOf(from, '<', '>');
  while (*close == '<' && StartsWith(close, end_, kSectionOpener)) {
    char* sectionEnd = FindNearText(close + kSectionOpener.size(), end_, kSectionEnd);
    if (sectionEnd == nullptr) return nullptr;
    close = FirstOf(sectionEnd + kSectionEnd.size(), '<', '>');
  }
  return *close == '\0' ? nullptr : close;
}

// The closing tag's name is never read: it closes the open element, whatever it names.
void TreeBuilder::CloseElement() noexcept {
  TBXMLElement* element = openElement_;
  if (element == nullptr) return;
  if (element->text != nullptr) TrimText(*element);
  if (depth_-- == tree_.listedLevel && element->firstChild != nullptr) tree_.listed.Append(element);
  openElement_ = element->parentElement;
  if (openElement_ != nullptr && openElement_->firstChild != nullptr) openElement_->text = nullptr;
}

bool TreeBuilder::OpenElement(char* open, char* close) noexcept {
  const bool empty = close[-1] == '/';
  TBXMLElement* element = tree_.nextAvailableElement();
  if (element == nullptr) return false;
  element->name = open + 1;
  // An element that starts when none is open stays unattached.
  if (openElement_ != nullptr) AppendChildren(openElement_, element, element);

  // Only a blank or a '/' ends the name: a tab or line break behind it stays part of it, as
  // required.
  char* nameEnd = FirstOf(open + 1, ' ', '/');
  if (nameEnd != close) {
    *nameEnd = '\0';
    if (!AttributeScanner(tree_, *element).Scan(nameEnd + 1, close)) return false;
  }
  if (empty) return true;
  openElement_ = element;
  ++depth_;
  if (close[1] != '>') element->text = close + 1;
  return true;
}

}  // namespace tavrel::xml
