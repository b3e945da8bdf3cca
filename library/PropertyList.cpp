#include "library/PropertyList.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>

#include "agent/GlobalState.h"
#include "library/Numbers.h"
#include "library/TextDecoding.h"
#include "platform/FileUrl.h"
#include "platform/Guard.h"
#include "platform/Memory.h"
#include "xml/TBXML.h"

namespace platform = tavrel::platform;

namespace {

bool Equals(const char* bytes, const char* text) noexcept {
  return bytes != nullptr && std::strcmp(bytes, text) == 0;
}

// Decoded into zero-filled memory: a text in error is still terminated.
char* DecodedCopy(const char* source, std::int32_t size) noexcept {
  auto* decoded = static_cast<char*>(platform::AllocateZeroed(static_cast<std::size_t>(size)));
  if (decoded != nullptr) RestoreXMLEscChar(decoded, source, size);
  return decoded;
}

// A new text with the path of a URL; null when the URL is malformed or memory is exhausted.
char* PathCopy(const char* url, std::int32_t& length) noexcept {
  return platform::Guarded<char*>(nullptr, [&]() -> char* {
    const std::optional<std::string> path = platform::PathOfUrl(url);
    if (!path) return nullptr;
    length = static_cast<std::int32_t>(path->size());
    auto* copy = static_cast<char*>(platform::Allocate(path->size() + 1));
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

std::int32_t tavrel::ReadValue(const TBXMLElement* element, char** text, std::int32_t* value,
                               std::int32_t flags) noexcept {
  if (element == nullptr) return 0;

  // Before the flags: a boolean never yields a text, but it does set the size of one. Kept.
  const bool isTrue = Equals(element->name, "true");
  if (isTrue || Equals(element->name, "false")) {
    *value = isTrue ? 1 : 0;
    return 0;
  }
  if (element->text == nullptr) {
    *value = 0;
    return 0;
  }

  auto length = static_cast<std::int32_t>(std::strlen(element->text));
  if ((flags & SONGPROP_TEXT) == 0) {
    *value = tavrel::ReadDecimal({element->text, static_cast<std::size_t>(length)});
    return length;
  }
  char* result = DecodedCopy(element->text, length + 1);
  if ((flags & SONGPROP_URL) != 0 && result != nullptr) {
    char* path = PathCopy(result, length);
    platform::Release(result);
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
    platform::Release(result);
  }
  return length;
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

void tavrel::FindValues(const TBXMLElement* dict, std::span<const char* const> keys,
                        const TBXMLElement** values) noexcept {
  std::fill_n(values, keys.size(), nullptr);
  const TBXMLElement* keyElement = dict == nullptr ? nullptr : dict->firstChild;
  while (keyElement != nullptr && keyElement->nextSibling != nullptr) {
    const TBXMLElement* valueElement = keyElement->nextSibling;
    const char* text = keyElement->text;
    for (std::size_t i = 0; text != nullptr && i < keys.size(); ++i) {
      if (text[0] != keys[i][0] || values[i] != nullptr) continue;
      if (std::strcmp(text, keys[i]) == 0) values[i] = valueElement;
    }
    keyElement = valueElement->nextSibling;
  }
}
