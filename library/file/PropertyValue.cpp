#include "library/file/PropertyValue.h"

#include <optional>
#include <string>

#include "library/file/PersistentId.h"
#include "library/file/PropertyList.h"
#include "library/file/XmlText.h"
#include "system/Guard.h"
#include "text/FileUrl.h"
#include "text/OrdinaryUrl.h"

namespace tavrel {
namespace {

// A text in error is terminated too: the memory is zero-filled. Null when memory is exhausted.
char* DecodedText(const char* source, std::size_t length, TextMemory memory) noexcept {
  char* decoded = memory.Take(length + 1);
  if (decoded == nullptr) return nullptr;
  if (HoldsReference({source, length})) {
    DecodeXmlText(decoded, source, static_cast<std::int32_t>(length + 1));
  } else {
    std::memcpy(decoded, source, length);
  }
  return decoded;
}

// Writes the path of a URL, which is never longer than the URL.
// length: receives that of the path. False when the URL is malformed or memory is exhausted.
bool DecodeUrl(const char* url, char* path, std::size_t& length) noexcept {
  if (const auto ordinary = text::PathOfOrdinaryUrl(url, path)) {
    length = *ordinary;
    path[length] = '\0';
    return true;
  }
  return system::Guarded(false, [&] {
    const std::optional<std::string> decoded = text::PathOfUrl(url);
    if (!decoded) return false;
    length = decoded->size();
    std::memcpy(path, decoded->c_str(), length + 1);
    return true;
  });
}

// A new text with the path of a URL; null when the URL is malformed or memory is exhausted.
char* DecodedPath(const char* source, std::size_t& length, TextMemory memory) noexcept {
  char* decoded = nullptr;  // most URLs need none
  if (HoldsReference({source, length})) {
    decoded = DecodedText(source, length, memory);
    if (decoded == nullptr) return nullptr;
  }
  char* path = memory.Take(length + 1);
  if (path != nullptr && !DecodeUrl(decoded == nullptr ? source : decoded, path, length)) {
    memory.GiveBack(path);
    path = nullptr;
  }
  memory.GiveBack(decoded);
  return path;
}

}  // namespace

// Whatever is asked for: a boolean never yields a text, but it does set the size of one. Kept.
const char* TextOrNumber(const TBXMLElement* element, std::int32_t& number) noexcept {
  if (element == nullptr) return nullptr;
  if (const std::optional<bool> boolean = BooleanOf(*element)) {
    number = *boolean ? 1 : 0;
    return nullptr;
  }
  if (element->text == nullptr) number = 0;
  return element->text;
}

std::int32_t ReadValue(const TBXMLElement* element, char** text, std::int32_t* value,
                       std::int32_t flags, TextMemory memory) noexcept {
  const char* source = TextOrNumber(element, *value);
  if (source == nullptr) return 0;
  std::size_t length = std::strlen(source);
  if ((flags & SONGPROP_TEXT) == 0) {
    *value = text::ReadDecimal({source, length});
    return static_cast<std::int32_t>(length);
  }
  char* result = (flags & SONGPROP_URL) != 0 ? DecodedPath(source, length, memory)
                                             : DecodedText(source, length, memory);
  if (result == nullptr) {
    *value = 0;
    return 0;
  }
  *value = static_cast<std::int32_t>(length + 1);
  if (text != nullptr) {
    *text = result;
  } else {
    memory.GiveBack(result);
  }
  return static_cast<std::int32_t>(length);
}

std::int32_t ReadProperty(const TBXMLElement* dict, const char* key, char** text,
                          std::int32_t* value, std::int32_t flags) noexcept {
  if (key == nullptr || value == nullptr) return 0;
  return ReadValue(FindValue(dict, key), text, value, flags, TextMemory());
}

void ReadPersistentId(const TBXMLElement* element, std::uint8_t* bytes) noexcept {
  std::int32_t number = 0;
  const char* source = TextOrNumber(element, number);
  if (source == nullptr) return;
  const std::size_t length = std::strlen(source);
  if (!HoldsReference({source, length})) {
    ParsePersistentId(source, bytes);
    return;
  }
  TextMemory memory;
  char* decoded = DecodedText(source, length, memory);
  ParsePersistentId(decoded, bytes);
  memory.GiveBack(decoded);
}

}  // namespace tavrel
