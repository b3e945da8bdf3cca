#include "xml/ElementList.h"

#include <algorithm>

#include "system/Memory.h"

namespace tavrel::xml {

bool ElementList::Grow() noexcept {
  const std::size_t capacity = std::max<std::size_t>(64, capacity_ * 2);
  void* block = system::Reallocate(elements_, capacity * sizeof(TBXMLElement*));
  if (block == nullptr) return false;
  elements_ = static_cast<TBXMLElement**>(block);
  capacity_ = capacity;
  return true;
}

void ElementList::Release() noexcept {
  system::Release(elements_);
  *this = {};
}

}  // namespace tavrel::xml
