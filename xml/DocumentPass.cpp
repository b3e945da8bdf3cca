#include "xml/DocumentPass.h"

#include <cstring>

#include "xml/AttributeScanner.h"
#include "xml/ByteScan.h"
#include "xml/CDataSections.h"

using namespace tavrel::xml;

namespace {

char* FirstOf(char* from, char a, char b) noexcept {
  while (*from != a && *from != b && *from != '\0') ++from;
  return from;
}

void TrimText(TBXMLElement& element) noexcept {
  while (IsWhitespace(*element.text)) ++element.text;
  char* last = element.text + std::strlen(element.text);
  while (last > element.text + 1 && IsWhitespace(last[-1])) *--last = '\0';
}

}  // namespace

void TBXML::decodeBytes() noexcept {
  if (fields_.bytes == nullptr) return;
  const auto bytes = static_cast<std::size_t>(fields_.bytesLength);
  // A zero byte inside the text ends it for every search.
  DocumentPass(*this, fields_.bytes, fields_.bytes + strnlen(fields_.bytes, bytes)).Run();
}

void DocumentPass::Run() noexcept {
  char* open = nullptr;
  do {
    open = FindByte(position_, end_, '<');
  } while (open != nullptr && Step(open));
}

bool DocumentPass::Step(char* open) noexcept {
  if (StartsWith(open, end_, kCommentOpener)) return SkipComment(open);
  if (StartsWith(open, end_, kSectionOpener)) return TakeSections(open);

  char* close = FindTagEnd(open + 1);
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
  char* behindContent = JoinSections(open, end_);
  if (behindContent == nullptr) return false;
  position_ = behindContent;
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
  if (openElement_ == nullptr) return;
  if (openElement_->text != nullptr) TrimText(*openElement_);
  openElement_ = openElement_->parentElement;
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
