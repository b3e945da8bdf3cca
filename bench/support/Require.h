// What must hold for figures to be worth anything.
#pragma once

#include <stdexcept>

namespace tavrel::bench {

inline void Require(bool holds, const char* what) {
  if (!holds) throw std::runtime_error(what);
}

}  // namespace tavrel::bench
