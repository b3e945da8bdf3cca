// Making texts for tests.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace tavrel::test {

[[nodiscard]] inline std::string Join(std::initializer_list<std::string_view> pieces) {
  std::string text;
  for (const std::string_view piece : pieces) text += piece;
  return text;
}

[[nodiscard]] inline std::string Repeated(std::string_view text, std::size_t count) {
  std::string result;
  result.reserve(text.size() * count);
  while (count-- > 0) result += text;
  return result;
}

}  // namespace tavrel::test
