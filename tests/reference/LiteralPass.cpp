#include "tests/reference/LiteralPass.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace tavrel::reference {
namespace {

constexpr char kOpener[] = "<![CDATA[";
constexpr char kEnd[] = "]]>";

bool IsBlank(char byte) noexcept {
  return byte != '\0' && std::strchr(" \t\n\v\f\r", byte) != nullptr;
}

bool Begins(const char* text, const char* with) noexcept {
  return std::strncmp(text, with, std::strlen(with)) == 0;
}

template <class Record>
Record* NewRecords(std::size_t count) {
  void* records = std::calloc(count, sizeof(Record));
  if (records == nullptr) throw std::bad_alloc();
  return static_cast<Record*>(records);
}

template <class Record, class Chunk>
Record* NextRecord(Chunk*& newest, std::ptrdiff_t& current, Record* Chunk::*records) {
  ++current;
  if (newest == nullptr || current >= kRecordsPerChunk) {
    auto* chunk = NewRecords<Chunk>(1);
    chunk->previous = newest;
    if (newest != nullptr) newest->next = chunk;
    newest = chunk;
    newest->*records = NewRecords<Record>(kRecordsPerChunk);
    current = 0;
  }
  return newest->*records + current;
}

template <class Record, class Chunk>
void FreeChunks(Chunk* newest, Record* Chunk::*records) noexcept {
  while (newest != nullptr) {
    Chunk* previous = newest->previous;
    std::free(newest->*records);
    std::free(newest);
    newest = previous;
  }
}

// The '>' or '<' that ends a tag; null when there is none.
char* TagEnd(char* from) noexcept {
  char* close = std::strpbrk(from, "<>");
  while (close != nullptr && Begins(close, kOpener)) {
    char* end = std::strstr(close, kEnd);
    if (end == nullptr) return nullptr;
    close = std::strpbrk(end + std::strlen(kEnd), "<>");
  }
  return close;
}

void RemoveMarkers(char* value) noexcept {
  while (char* opener = std::strstr(value, kOpener)) {
    const char* content = opener + std::strlen(kOpener);
    std::memmove(opener, content, std::strlen(content) + 1);
    char* end = std::strstr(opener, kEnd);
    if (end == nullptr) return;
    const char* rest = end + std::strlen(kEnd);
    std::memmove(end, rest, std::strlen(rest) + 1);
  }
}

}  // namespace

LiteralPass::~LiteralPass() {
  FreeChunks(fields_.currentElementBuffer, &TBXMLElementBuffer::elements);
  FreeChunks(fields_.currentAttributeBuffer, &TBXMLAttributeBuffer::attributes);
}

void LiteralPass::Run(char* text) {
  fields_.bytes = text;
  fields_.bytesLength = static_cast<std::ptrdiff_t>(std::strlen(text));
  char* at = text;
  while (char* open = std::strchr(at, '<')) {
    if (Begins(open, "<!--")) {
      char* end = std::strstr(open, "-->");
      if (end == nullptr) return;
      at = end + 3;
      continue;
    }
    if (Begins(open, kOpener)) {
      at = TakeSection(open);
      if (at == nullptr) return;
      continue;
    }
    char* close = TagEnd(open + 1);
    if (close == nullptr) return;
    *close = '\0';
    *open = '\0';
    at = close + 1;
    if (open[1] == '?' || open[1] == '!') continue;
    if (open[1] == '/') {
      CloseElement();
    } else {
      OpenElement(open, close);
    }
  }
}

// Result: where scanning goes on; null when the section, or one behind it, never ends.
char* LiteralPass::TakeSection(char* open) const noexcept {
  char* end = std::strstr(open, kEnd);
  if (end == nullptr) return nullptr;
  char* next = std::strchr(end, '<');
  while (next != nullptr && Begins(next, kOpener)) {
    char* nextEnd = std::strstr(next, kEnd);
    if (nextEnd == nullptr) return nullptr;
    next = std::strchr(nextEnd, '<');
  }
  if (next == nullptr) return nullptr;
  std::memmove(open, open + 9, static_cast<std::size_t>(end - open - 9));
  std::memmove(end - 9, end + 3, static_cast<std::size_t>(next - end - 3));
  std::memset(next - 12, ' ', 12);
  return end - 9;
}

void LiteralPass::OpenElement(char* open, char* close) {
  const char beforeClose = close[-1];
  TBXMLElement* element = NextElement();
  element->name = open + 1;
  if (openElement_ != nullptr) {
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
  char* nameEnd = std::strpbrk(element->name, " /");
  if (nameEnd != nullptr) {
    *nameEnd = '\0';
    ScanAttributes(element, nameEnd + 1, close);
  }
  if (beforeClose == '/') return;
  openElement_ = element;
  if (close[1] != '>') element->text = close + 1;
}

void LiteralPass::CloseElement() noexcept {
  TBXMLElement* element = openElement_;
  if (element == nullptr) return;
  if (element->text != nullptr) {
    while (IsBlank(*element->text)) ++element->text;
    char* last = element->text + std::strlen(element->text) - 1;
    for (; last > element->text && IsBlank(*last); --last) *last = '\0';
  }
  openElement_ = element->parentElement;
  if (openElement_ != nullptr && openElement_->firstChild != nullptr) openElement_->text = nullptr;
}

void LiteralPass::ScanAttributes(TBXMLElement* element, char* from, const char* to) {
  int state = 0;
  char* name = nullptr;
  char* value = nullptr;
  char quote = '\0';
  TBXMLAttribute* last = nullptr;
  for (char* at = from; at <= to; ++at) {
    const char byte = *at;
    if (state == 0) {
      if (IsBlank(byte)) continue;
      name = at;
      state = 1;
    } else if (state == 1) {
      if (!IsBlank(byte) && byte != '=') continue;
      *at = '\0';
      state = 2;
    } else if (state == 2) {
      if (byte != '"' && byte != '\'') continue;
      value = at + 1;
      quote = byte;
      state = 3;
    } else if (state == 3) {
      if (byte == '<' && Begins(at, kOpener)) {
        state = 4;
      } else if (byte == quote) {
        *at = '\0';
        RemoveMarkers(value);
        TBXMLAttribute* attribute = NextAttribute();
        (last == nullptr ? element->firstAttribute : last->next) = attribute;
        attribute->name = name;
        attribute->value = value;
        last = attribute;
        state = 0;
      }
    } else if (byte == ']' && Begins(at, kEnd)) {
      state = 3;
    }
  }
}

TBXMLElement* LiteralPass::NextElement() {
  TBXMLElement* element = NextRecord(fields_.currentElementBuffer, fields_.currentElement,
                                     &TBXMLElementBuffer::elements);
  if (fields_.rootXMLElement == nullptr) fields_.rootXMLElement = element;
  return element;
}

TBXMLAttribute* LiteralPass::NextAttribute() {
  return NextRecord(fields_.currentAttributeBuffer, fields_.currentAttribute,
                    &TBXMLAttributeBuffer::attributes);
}

}  // namespace tavrel::reference
