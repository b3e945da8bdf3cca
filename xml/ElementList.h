// Elements that are listed while a text is parsed, for those who will soon want to know where they
// lie.
#pragma once

#include <cstddef>
#include <span>

#include "xml/Records.h"

namespace tavrel::xml {

// A plain record: all zero is an empty list. It has no destructor: see Release().
class ElementList {
 public:
  // Where there is no memory for it, the element is missing.
  void Append(TBXMLElement* element) noexcept {
    if (count_ < capacity_ || Grow()) elements_[count_++] = element;
  }
  void Release() noexcept;  // the list is empty then

  [[nodiscard]] std::span<TBXMLElement* const> All() const noexcept { return {elements_, count_}; }

 private:
  bool Grow() noexcept;

  TBXMLElement** elements_ = nullptr;
  std::size_t count_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace tavrel::xml
