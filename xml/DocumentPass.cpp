#include "xml/DocumentPass.h"

#include <cstring>

#include "xml/AttributeScanner.h"
#include "xml/ByteScan.h"
#include "xml/CDataSections.h"

using namespace tavrel::xml;

namespace {

constinit std::optional<PassChoice> forcedPass;

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

// Whether one of the first `length` of eight bytes is that byte. (The usual test for a zero byte;
// it may report bytes above the first hit in error, but never below it.)
bool HasByte(std::uint64_t bytes, std::size_t length, char byte) noexcept {
  constexpr std::uint64_t kOnes = 0x0101010101010101u;
  const std::uint64_t zeroes = bytes ^ (kOnes * static_cast<unsigned char>(byte));
  const std::uint64_t hits = (zeroes - kOnes) & ~zeroes & (kOnes << 7);
  return (hits << (8 * (8 - length))) != 0;
}

}  // namespace

void TBXML::decodeBytes(std::size_t textLength) noexcept {
  if (fields_.bytes == nullptr) return;
  DocumentPass pass(*this, fields_.bytes, fields_.bytes + textLength);
  const PassChoice choice = forcedPass ? *forcedPass : PassChoice{true, BestInstructionSet()};
  if (choice.indexed) {
    pass.RunIndexed(choice.set);
  } else {
    pass.Run();
  }
}

void ForcePass(std::optional<PassChoice> choice) noexcept {
  forcedPass = choice;
}

void DocumentPass::Run() noexcept {
  char* open = nullptr;
  do {
    open = FindByte(position_, end_, '<');
  } while (open != nullptr && Step(open, nullptr));
}

void DocumentPass::RunIndexed(InstructionSet set) noexcept {
  if (static_cast<std::size_t>(end_ - text_) > TagIndex::kLongest) return Run();
  TagIndex index(text_, end_, set);
  while (index.Has(TagIndex::kMostAhead)) {
    const std::uint32_t* marks = index.Next();
    char* open = text_ + marks[0];
    if (TakeLeaf(marks)) {
      index.Skip(4);
    } else if (*open == '>') {  // in character data
      index.Skip(1);
    } else {
      if (!Step(open, text_ + marks[1])) return;
      index.SkipTo(static_cast<std::size_t>(position_ - text_));
    }
  }
  Run();  // what is left holds too few
}

bool DocumentPass::TakeLeaf(const std::uint32_t* marks) noexcept {
  char* open = text_ + marks[0];
  char* nameEnd = text_ + marks[1];
  char* textEnd = text_ + marks[2];
  char* close = text_ + marks[3];
  if (*open != '<' || *nameEnd != '>' || *textEnd != '<' || *close != '>' || textEnd[1] != '/' ||
      openElement_ == nullptr) {
    return false;
  }
  const auto nameLength = static_cast<std::size_t>(nameEnd - open - 1);
  if (nameLength - 1 > 7 || end_ - open < 9) return false;
  // One load, before the zero bytes are written: a wide load right behind a narrow store would
  // stall.
  std::uint64_t name;
  std::memcpy(&name, open + 1, sizeof name);
  const bool plainName = open[1] != '!' && open[1] != '?' && !HasByte(name, nameLength, ' ') &&
                         !HasByte(name, nameLength, '/');
  // With no blank at either end there is nothing to trim. (An empty text shows its tags' own
  // bytes.)
  const bool trimmed =
      static_cast<unsigned char>(nameEnd[1]) > ' ' && static_cast<unsigned char>(textEnd[-1]) > ' ';
  if (!plainName || !trimmed) return false;

  TBXMLElement* element = document_.nextAvailableElement();
  if (element == nullptr) return false;
  *open = *nameEnd = *textEnd = *close = '\0';
  element->name = open + 1;
  element->text = nameEnd + 1;
  AppendToOpenElement(element);
  openElement_->text = nullptr;  // as for every parent of an element that a tag closes
  position_ = close + 1;
  return true;
}

bool DocumentPass::Step(char* open, char* nextMark) noexcept {
  if (StartsWith(open, end_, kCommentOpener)) return SkipComment(open);
  if (StartsWith(open, end_, kSectionOpener)) return TakeSections(open);

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
bool DocumentPass::SkipComment(char* open) noexcept {
  char* commentEnd = FindText(open, end_, kCommentEnd);
  if (commentEnd == nullptr) return false;
  position_ = commentEnd + kCommentEnd.size();
  return true;
}

bool DocumentPass::TakeSections(char* open) noexcept {
  char* nextTag = JoinSections(open, end_);
  if (nextTag == nullptr) return false;
  position_ = nextTag;
  return true;
}

// The '>' of the tag, or the '<' that ends it too; one that opens a CDATA section, in an attribute
// value, does not. Null when there is neither before the text ends.
char* DocumentPass::FindTagEnd(char* from) noexcept {
  char* close = FirstOf(from, '<', '>');
  while (*close == '<' && StartsWith(close, end_, kSectionOpener)) {
    char* sectionEnd = FindText(close, end_, kSectionEnd);
    if (sectionEnd == nullptr) return nullptr;
    close = FirstOf(sectionEnd + kSectionEnd.size(), '<', '>');
  }
  return *close == '\0' ? nullptr : close;
}

// The closing tag's name is never read: it closes the open element, whatever it names.
void DocumentPass::CloseElement() noexcept {
  TBXMLElement* element = openElement_;
  if (element == nullptr) return;
  if (element->text != nullptr) TrimText(*element);
  --depth_;
  openElement_ = element->parentElement;
  if (openElement_ != nullptr && openElement_->firstChild != nullptr) openElement_->text = nullptr;
}

bool DocumentPass::OpenElement(char* open, char* close) noexcept {
  const bool empty = close[-1] == '/';
  TBXMLElement* element = document_.nextAvailableElement();
  if (element == nullptr) return false;
  element->name = open + 1;
  AppendToOpenElement(element);

  // Only a blank or a '/' ends the name: a tab or line break behind it stays part of it, as
  // required.
  char* nameEnd = FirstOf(open + 1, ' ', '/');
  if (nameEnd != close) {
    *nameEnd = '\0';
    if (!AttributeScanner(document_, *element).Scan(nameEnd + 1, close)) return false;
  }
  if (empty) return true;
  openElement_ = element;
  if (++depth_ == 4) document_.noteFourthLevel(element);
  if (close[1] != '>') element->text = close + 1;
  return true;
}

// An element that starts when none is open stays unattached.
void DocumentPass::AppendToOpenElement(TBXMLElement* element) noexcept {
  if (openElement_ == nullptr) return;
  TBXMLElement* previous = openElement_->currentChild;
  if (previous != nullptr) {
    previous->nextSibling = element;
    element->previousSibling = previous;
  } else {
    openElement_->firstChild = element;
  }
  openElement_->currentChild = element;
  element->parentElement = openElement_;
}
