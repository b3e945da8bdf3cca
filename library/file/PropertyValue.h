// What a value element of a property list stands for: a number, a boolean, a text, the path of a URL
// or a persistent ID.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

#include "system/Memory.h"
#include "system/ZeroedArena.h"
#include "text/Numbers.h"
#include "xml/Records.h"

inline constexpr std::int32_t SONGPROP_TEXT = 2;
inline constexpr std::int32_t SONGPROP_URL = 4;  // together with SONGPROP_TEXT

namespace tavrel {

// Where decoded texts go: into an arena, or, without one, into blocks of the malloc family.
class TextMemory {
 public:
  TextMemory() noexcept = default;
  explicit TextMemory(system::ZeroedArena& arena) noexcept : arena_(&arena) {}

  // Zero-filled; null when memory is exhausted.
  [[nodiscard]] char* Take(std::size_t bytes) noexcept {
    return static_cast<char*>(arena_ == nullptr ? system::AllocateZeroed(bytes)
                                                : arena_->Take(bytes));
  }
  void GiveBack(char* text) noexcept {
    if (arena_ == nullptr) system::Release(text);
  }

 private:
  system::ZeroedArena* arena_ = nullptr;
};

// The boolean that an element is, which its name alone decides; none for every other one.
[[nodiscard]] inline std::optional<bool> BooleanOf(const TBXMLElement& element) noexcept {
  // Most values are none, as the first letter of the name tells.
  const char initial = element.name == nullptr ? '\0' : *element.name;
  if (initial == 't' && std::strcmp(element.name, "true") == 0) return true;
  if (initial == 'f' && std::strcmp(element.name, "false") == 0) return false;
  return std::nullopt;
}

// The text of a value as it stands in the file. None when there is no value, and, with the number
// of ReadValue() for them, when it is a boolean or has no text.
[[nodiscard]] const char* TextOrNumber(const TBXMLElement* element, std::int32_t& number) noexcept;

// Reads a value, which may be none.
// text:   with SONGPROP_TEXT, receives a new text, NUL-terminated, out of `memory`; may be null
//         without. Not touched when there is no text to give.
// value:  receives the number, the boolean (1 or 0, whatever the flags) or the text's size in
//         bytes, terminator included. Not touched when there is no value.
// flags:  0 reads a decimal number, SONGPROP_TEXT a text, SONGPROP_TEXT | SONGPROP_URL the path of
//         a URL.
// Result: the length of the value as it stands in the file (of a URL: of its path) in bytes; 0 when
//         there is none, when it is a boolean, when the URL is malformed or memory is exhausted.
//
// The size of a text is that of the text as it stands in the file plus 1, which the decoded text
// does not exceed. A text whose references are in error is the terminated prefix that was decoded.
std::int32_t ReadValue(const TBXMLElement* element, char** text, std::int32_t* value,
                       std::int32_t flags, TextMemory memory) noexcept;

// Reads the first pair of a dictionary whose key is exactly `key`, in the same way, into memory of
// the malloc family.
std::int32_t ReadProperty(const TBXMLElement* dict, const char* key, char** text,
                          std::int32_t* value, std::int32_t flags) noexcept;

// Reads a persistent ID; untouched when there is none.
void ReadPersistentId(const TBXMLElement* element, std::uint8_t* bytes) noexcept;

// The number that a value's text begins with, whatever the value is; 0 without a text.
[[nodiscard]] inline std::int32_t NumberOf(const TBXMLElement* element) noexcept {
  return element == nullptr || element->text == nullptr ? 0 : text::ReadDecimal(element->text);
}

}  // namespace tavrel
