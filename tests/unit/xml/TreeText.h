// Documents as text, for tests to compare.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xml/TBXML.h"

namespace tavrel::test {

// A document with exactly these bytes as its text.
[[nodiscard]] inline std::unique_ptr<TBXML> Parse(std::string_view text) {
  return TBXML::tbxmlWithXMLString(std::string(text));
}

[[nodiscard]] inline std::string TreeOf(const TBXMLElement* element) {
  if (element == nullptr) return "none";
  std::string text = element->name;
  const char* separator = "(";
  for (const auto* at = element->firstAttribute; at != nullptr; at = at->next) {
    text.append(separator).append(at->name).append("=").append(at->value);
    separator = ", ";
  }
  if (element->firstAttribute != nullptr) text += ")";
  if (element->text != nullptr) text.append("'").append(element->text).append("'");
  separator = "[";
  for (const auto* at = element->firstChild; at != nullptr; at = at->nextSibling) {
    text.append(separator).append(TreeOf(at));
    separator = " ";
  }
  if (element->firstChild != nullptr) text += "]";
  return text;
}

// The tree under the root, as name(attribute=value, ...)'text'[child child ...]. Without a text
// there are no quotes; without any element the result is "none".
[[nodiscard]] inline std::string TreeOf(std::string_view text) {
  return TreeOf(Parse(text)->rootXMLElement());
}

// All element records in the order in which they were handed out, attached or not.
[[nodiscard]] inline std::vector<const TBXMLElement*> ElementsOf(const TBXMLFields& document) {
  std::vector<const TBXMLElement*> elements;
  const TBXMLElementBuffer* newest = document.currentElementBuffer;
  const TBXMLElementBuffer* chunk = newest;
  while (chunk != nullptr && chunk->previous != nullptr) chunk = chunk->previous;
  for (; chunk != nullptr; chunk = chunk->next) {
    const std::ptrdiff_t used = chunk == newest ? document.currentElement + 1 : kRecordsPerChunk;
    for (std::ptrdiff_t i = 0; i < used; ++i) elements.push_back(chunk->elements + i);
  }
  return elements;
}

[[nodiscard]] inline std::vector<const TBXMLElement*> ElementsOf(const TBXML& document) {
  return ElementsOf(document.fields());
}

}  // namespace tavrel::test
