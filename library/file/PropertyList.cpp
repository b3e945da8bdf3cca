#include "library/file/PropertyList.h"

#include <cstring>
#include <optional>
#include <string>

#include "library/State.h"
#include "library/file/PersistentId.h"
#include "library/file/TextDecoding.h"
#include "system/Guard.h"
#include "system/Memory.h"
#include "text/FileUrl.h"
#include "text/Numbers.h"
#include "xml/TBXML.h"

using namespace tavrel;

namespace {

bool Equals(const char* bytes, const char* text) noexcept {
  return bytes != nullptr && std::strcmp(bytes, text) == 0;
}

std::optional<bool> BooleanOf(const char* elementName) noexcept {
  const char initial = elementName == nullptr ? '\0' : *elementName;
  if (initial == 't' && Equals(elementName, "true")) return true;
  if (initial == 'f' && Equals(elementName, "false")) return false;
  return std::nullopt;
}

// Decoded into zero-filled memory: a text in error is still terminated.
char* DecodedCopy(const char* source, std::int32_t size) noexcept {
  auto* decoded = static_cast<char*>(system::AllocateZeroed(static_cast<std::size_t>(size)));
  if (decoded != nullptr) RestoreXMLEscChar(decoded, source, size);
  return decoded;
}

// A new text with the path of a URL; null when the URL is malformed or memory is exhausted.
char* PathCopy(const char* url, std::int32_t& length) noexcept {
  return system::Guarded<char*>(nullptr, [&]() -> char* {
    const std::optional<std::string> path = text::PathOfUrl(url);
    if (!path) return nullptr;
    length = static_cast<std::int32_t>(path->size());
    auto* copy = static_cast<char*>(system::Allocate(path->size() + 1));
    if (copy != nullptr) std::memcpy(copy, path->c_str(), path->size() + 1);
    return copy;
  });
}

}  // namespace

std::int32_t ReadSongProp(const TBXMLElement* dict, const char* key, char** text,
                          std::int32_t* value, std::int32_t flags) noexcept {
  if (key == nullptr || value == nullptr) return 0;
  return tavrel::ReadValue(tavrel::FindValue(dict, key), text, value, flags);
}

// Whatever is asked for: a boolean never yields a text, but it does set the size of one. Kept.
const char* tavrel::TextOrNumber(const TBXMLElement* element, std::int32_t& number) noexcept {
  if (element == nullptr) return nullptr;
  if (const std::optional<bool> boolean = BooleanOf(element->name)) {
    number = *boolean ? 1 : 0;
    return nullptr;
  }
  if (element->text == nullptr) number = 0;
  return element->text;
}

std::int32_t tavrel::ReadValue(const TBXMLElement* element, char** text, std::int32_t* value,
                               std::int32_t flags) noexcept {
  const char* source = TextOrNumber(element, *value);
  if (source == nullptr) return 0;
  auto length = static_cast<std::int32_t>(std::strlen(source));
  if ((flags & SONGPROP_TEXT) == 0) {
    *value = tavrel::text::ReadDecimal({source, static_cast<std::size_t>(length)});
    return length;
  }
  char* result = DecodedCopy(source, length + 1);
  if ((flags & SONGPROP_URL) != 0 && result != nullptr) {
    char* path = PathCopy(result, length);
    system::Release(result);
    result = path;
  }
  if (result == nullptr) {
    *value = 0;
    return 0;
  }
  *value = length + 1;
  if (text != nullptr) {
    *text = result;
  } else {
    system::Release(result);
  }
  return length;
}

void tavrel::ReadPersistentId(const TBXMLElement* element, std::uint8_t* bytes) noexcept {
  std::int32_t number = 0;
  const char* source = TextOrNumber(element, number);
  if (source == nullptr) return;
  if (std::strchr(source, '&') == nullptr) {
    PersistentId2Buf(source, bytes);
    return;
  }
  char* decoded = DecodedCopy(source, static_cast<std::int32_t>(std::strlen(source)) + 1);
  PersistentId2Buf(decoded, bytes);
  system::Release(decoded);
}

TBXMLElement* tavrel::TopLevelDictionary() noexcept {
  if (g_pGlobal == nullptr || g_pGlobal->document == nullptr) return nullptr;
  const TBXMLElement* root = g_pGlobal->document->rootXMLElement();
  return root == nullptr ? nullptr : root->firstChild;
}

const TBXMLElement* tavrel::FindValue(const TBXMLElement* dict, const char* key) noexcept {
  const TBXMLElement* keyElement = dict == nullptr ? nullptr : dict->firstChild;
  while (keyElement != nullptr) {
    const TBXMLElement* valueElement = keyElement->nextSibling;
    if (valueElement == nullptr || Equals(keyElement->text, key)) return valueElement;
    keyElement = valueElement->nextSibling;
  }
  return nullptr;
}
