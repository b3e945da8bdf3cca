// The tree of a document, and the memory that its records come from.
#pragma once

#include <cstddef>

#include "system/ZeroedArena.h"
#include "xml/ElementList.h"
#include "xml/RecordPool.h"
#include "xml/Records.h"

namespace tavrel::xml {

struct DocumentTree {
  DocumentTree() noexcept = default;
  DocumentTree(const DocumentTree&) = delete;
  DocumentTree& operator=(const DocumentTree&) = delete;
  ~DocumentTree() { Release(); }

  // A zero-filled record; none when memory is exhausted. The first element of all is the root.
  [[nodiscard]] TBXMLElement* nextAvailableElement() noexcept {
    TBXMLElement* element = NextRecord(fields.currentElementBuffer, fields.currentElement,
                                       &TBXMLElementBuffer::elements, records);
    if (fields.rootXMLElement == nullptr) fields.rootXMLElement = element;
    return element;
  }
  [[nodiscard]] TBXMLAttribute* nextAvailableAttribute() noexcept {
    return NextRecord(fields.currentAttributeBuffer, fields.currentAttribute,
                      &TBXMLAttributeBuffer::attributes, records);
  }

  // Gives back every record; the tree is empty then, and goes on listing the same level.
  void Release() noexcept {
    records.ReleaseAll();
    listed.Release();
    fields = {};
  }

  TBXMLFields fields = {};  // `bytes` is borrowed
  system::ZeroedArena records;
  std::size_t listedLevel = 0;  // 0: no element is listed; the root's level is 1
  ElementList listed;           // its elements with children, in the order of their end tags
};

}  // namespace tavrel::xml
