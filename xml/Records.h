// The records of a parsed document. Names, texts and values are zero-terminated UTF-8 bytes inside
// the document's buffer; "none" is null. Everything is valid exactly as long as the document lives.
#pragma once

#include <cstddef>

struct TBXMLAttribute {
  char* name;
  char* value;           // without its quotes and without CDATA markers
  TBXMLAttribute* next;  // the element's next attribute, or none
};

struct TBXMLElement {
  char* name;
  char* text;  // the character data behind the start tag; none when a child was closed by a tag
  TBXMLAttribute* firstAttribute;
  TBXMLElement* parentElement;
  TBXMLElement* firstChild;
  TBXMLElement* currentChild;  // the last child so far
  TBXMLElement* nextSibling;
  TBXMLElement* previousSibling;
};

// Records are handed out from chunks of 100.
inline constexpr std::ptrdiff_t kRecordsPerChunk = 100;

struct TBXMLElementBuffer {
  TBXMLElement* elements;
  TBXMLElementBuffer* next;
  TBXMLElementBuffer* previous;
};

struct TBXMLAttributeBuffer {
  TBXMLAttribute* attributes;
  TBXMLAttributeBuffer* next;
  TBXMLAttributeBuffer* previous;
};

// What every document begins with.
struct TBXMLFields {
  TBXMLElement* rootXMLElement;                  // the first record handed out, or none
  TBXMLElementBuffer* currentElementBuffer;      // the newest chunk, or none
  TBXMLAttributeBuffer* currentAttributeBuffer;  // the newest chunk, or none
  std::ptrdiff_t currentElement;                 // index of the last record in the newest chunk
  std::ptrdiff_t currentAttribute;
  char* bytes;                 // the text, with a zero byte behind it; owned by the document
  std::ptrdiff_t bytesLength;  // of the text, without that zero byte
};

#if defined(__LP64__)
static_assert(sizeof(TBXMLElement) == 64);
static_assert(sizeof(TBXMLAttribute) == 24);
static_assert(sizeof(TBXMLElementBuffer) == 24);
static_assert(sizeof(TBXMLAttributeBuffer) == 24);
#endif
