// Reading values out of property-list dictionaries: a dictionary's children are pairs of a key
// element and a value element, told apart by their position alone.
#pragma once

#include <cstdint>

#include "tavrel/tavrel.h"
#include "xml/Records.h"

inline constexpr std::int32_t SONGPROP_TEXT = 2;
inline constexpr std::int32_t SONGPROP_URL = 4;  // together with SONGPROP_TEXT

// Reads the value of the first pair whose key is exactly `key`.
// dict:   a dictionary element, borrowed; null counts as an empty one.
// text:   with SONGPROP_TEXT, receives a new text, NUL-terminated, which the caller releases with
//         free(); may be null without. Not touched when there is no text to give.
// value:  receives the number, the boolean (1 or 0, whatever the flags) or the text's size in
//         bytes, terminator included. Not touched when the key is missing.
// flags:  0 reads a decimal number, SONGPROP_TEXT a text, SONGPROP_TEXT | SONGPROP_URL the path of
//         a URL.
// Result: the length of the value as it stands in the file (of a URL: of its path) in bytes; 0 when
//         there is none, when it is a boolean, when the URL is malformed or memory is exhausted.
//
// The size of a text is that of the text as it stands in the file plus 1, which the decoded text
// does not exceed. A text whose references are in error is the terminated prefix that was decoded.
extern "C" TAVREL_API std::int32_t ReadSongProp(const TBXMLElement* dict, const char* key,
                                                char** text, std::int32_t* value,
                                                std::int32_t flags) noexcept;

namespace tavrel {

// The first child of the document's root: the top-level dictionary; none when there is none.
[[nodiscard]] TBXMLElement* TopLevelDictionary() noexcept;

// The value element of the first pair whose key is exactly `key`; none when there is no such pair,
// or no value behind the key, or no dictionary.
[[nodiscard]] const TBXMLElement* FindValue(const TBXMLElement* dict, const char* key) noexcept;

// The text of a value as it stands in the file. None when there is no value, and, with the number
// of ReadSongProp() for them, when it is a boolean or has no text.
[[nodiscard]] const char* TextOrNumber(const TBXMLElement* element, std::int32_t& number) noexcept;

// Reads a persistent ID from its value element, which may be none; untouched when there is none.
void ReadPersistentId(const TBXMLElement* element, std::uint8_t* bytes) noexcept;

// What ReadSongProp() does once the value element is found, which may be none.
std::int32_t ReadValue(const TBXMLElement* element, char** text, std::int32_t* value,
                       std::int32_t flags) noexcept;

// The value element of a dictionary's first pair, whatever its key; none when `dict` is none or
// empty.
[[nodiscard]] inline const TBXMLElement* FirstValue(const TBXMLElement* dict) noexcept {
  const TBXMLElement* key = dict == nullptr ? nullptr : dict->firstChild;
  return key == nullptr ? nullptr : key->nextSibling;
}

}  // namespace tavrel
