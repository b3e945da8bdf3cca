// Property-list dictionaries: their children are pairs of a key element and a value element, told
// apart by their position alone.
#pragma once

#include <cstdint>
#include <cstring>

#include "xml/Records.h"

class TBXML;

namespace tavrel {

// The pairs of a dictionary, in the file's order:
//
//   for (const auto [key, value] : Pairs(dict)) ...
//
// They end at the first key without a value behind it. No dictionary counts as an empty one.
class Pairs {
 public:
  struct Pair {
    const TBXMLElement* key;
    const TBXMLElement* value;
  };
  struct End {};
  class Iterator {
   public:
    explicit Iterator(const TBXMLElement* key) noexcept : pair_{key, ValueOf(key)} {}
    [[nodiscard]] Pair operator*() const noexcept { return pair_; }
    [[nodiscard]] bool operator==(End) const noexcept { return pair_.value == nullptr; }
    Iterator& operator++() noexcept {
      pair_.key = pair_.value->nextSibling;
      pair_.value = ValueOf(pair_.key);
      return *this;
    }

   private:
    static const TBXMLElement* ValueOf(const TBXMLElement* key) noexcept {
      return key == nullptr ? nullptr : key->nextSibling;
    }
    Pair pair_;
  };

  explicit Pairs(const TBXMLElement* dict) noexcept
      : firstKey_(dict == nullptr ? nullptr : dict->firstChild) {}
  [[nodiscard]] Iterator begin() const noexcept { return Iterator(firstKey_); }
  [[nodiscard]] End end() const noexcept { return {}; }

 private:
  const TBXMLElement* firstKey_;
};

// The value element of the first pair whose key is exactly `key`; none when there is none.
[[nodiscard]] inline const TBXMLElement* FindValue(const TBXMLElement* dict,
                                                   const char* key) noexcept {
  for (const auto [keyElement, value] : Pairs(dict)) {
    if (keyElement->text != nullptr && std::strcmp(keyElement->text, key) == 0) return value;
  }
  return nullptr;
}

// The value element of a dictionary's first pair, whatever its key; none when there is none.
[[nodiscard]] inline const TBXMLElement* FirstValue(const TBXMLElement* dict) noexcept {
  return (*Pairs(dict).begin()).value;
}

// The first child of the document's root: the top-level dictionary. None when there is none, or no
// document.
[[nodiscard]] const TBXMLElement* TopLevelDictionary(const TBXML* document) noexcept;

// Its first child of that name; none when there is none.
[[nodiscard]] const TBXMLElement* TopLevelChild(const TBXML* document, const char* name) noexcept;

}  // namespace tavrel
