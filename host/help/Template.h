// Texts with marks in them, which something takes the place of.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::host {

// `text` with the first `mark` replaced; as it is where there is none.
[[nodiscard]] inline std::string Replaced(std::string_view text, std::string_view mark,
                                          std::string_view with) {
  std::string result(text);
  const std::size_t at = result.find(mark);
  if (at != std::string::npos) result.replace(at, mark.size(), with);
  return result;
}

}  // namespace tavrel::host
