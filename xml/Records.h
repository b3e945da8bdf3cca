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

#if defined(__LP64__)
static_assert(sizeof(TBXMLElement) == 64);
static_assert(sizeof(TBXMLAttribute) == 24);
static_assert(sizeof(TBXMLElementBuffer) == 24);
static_assert(sizeof(TBXMLAttributeBuffer) == 24);
#endif
