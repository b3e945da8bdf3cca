// Names inside paths.
#pragma once

#include <string_view>

namespace tavrel::text {

struct SplitName {
  std::string_view base;       // everything before the dot
  std::string_view extension;  // everything behind it; empty when there is no dot
};

// Splits a path at the last '.' of its last component. The parts borrow from `path`.
[[nodiscard]] constexpr SplitName SplitExtension(std::string_view path) noexcept {
  const std::size_t slash = path.rfind('/');
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos || (slash != std::string_view::npos && dot < slash)) {
    return {path, {}};
  }
  return {path.substr(0, dot), path.substr(dot + 1)};
}

}  // namespace tavrel::text
