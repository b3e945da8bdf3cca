// A part of a text.
#pragma once

#include <cstddef>

namespace tavrel::host {

struct TextRange {
  std::size_t from;  // byte offsets
  std::size_t to;
};

}  // namespace tavrel::host
