#include <cstring>

#include "text/Utf8.h"
#include "xml/TBXML.h"

namespace {

// A text string of zero-terminated bytes; none when they are not valid UTF-8.
std::optional<std::string> TextString(const char* bytes) {
  const std::string_view text = bytes == nullptr ? "" : bytes;
  if (!tavrel::text::IsValidUtf8(text)) return std::nullopt;
  return std::string(text);
}

bool HasName(const char* bytes, std::string_view name) noexcept {
  return bytes != nullptr && strnlen(bytes, name.size() + 1) == name.size() &&
         std::memcmp(bytes, name.data(), name.size()) == 0;
}

TBXMLElement* FirstNamed(std::string_view name, TBXMLElement* candidate) noexcept {
  while (candidate != nullptr && !HasName(candidate->name, name))
    candidate = candidate->nextSibling;
  return candidate;
}

}  // namespace

std::optional<std::string> TBXML::elementName(const TBXMLElement* element) {
  return TextString(element->name);
}

std::optional<std::string> TBXML::textForElement(const TBXMLElement* element) {
  return TextString(element->text);
}

std::optional<std::string> TBXML::attributeName(const TBXMLAttribute* attribute) {
  return TextString(attribute->name);
}

std::optional<std::string> TBXML::attributeValue(const TBXMLAttribute* attribute) {
  return TextString(attribute->value);
}

TBXMLElement* TBXML::childElementNamed(std::string_view name,
                                       const TBXMLElement* parentElement) noexcept {
  return FirstNamed(name, parentElement->firstChild);
}

TBXMLElement* TBXML::nextSiblingNamed(std::string_view name,
                                      const TBXMLElement* searchFromElement) noexcept {
  return FirstNamed(name, searchFromElement->nextSibling);
}

std::optional<std::string> TBXML::valueOfAttributeNamed(std::string_view name,
                                                        const TBXMLElement* forElement) {
  const TBXMLAttribute* attribute = forElement->firstAttribute;
  while (attribute != nullptr && !HasName(attribute->name, name)) attribute = attribute->next;
  return attribute == nullptr ? std::nullopt : TextString(attribute->value);
}
