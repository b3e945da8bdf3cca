#include "host/output/HeldRows.h"

#include <cstring>
#include <new>

namespace tavrel::host {

void HeldRows::Add(std::string_view text, std::size_t columns) {
  auto* copy = static_cast<char*>(memory_.Take(text.size()));
  if (copy == nullptr) throw std::bad_alloc();
  std::memcpy(copy, text.data(), text.size());
  rows_.push_back({{copy, text.size()}, columns});
  size_ += text.size();
}

}  // namespace tavrel::host
