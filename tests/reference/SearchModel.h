// A slow, plain model of the text search: code points, one at a time, and every place tried.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::test {

// A folded text: code points, and whether each begins a character that may be torn from the one
// before it.
struct ModelText {
  std::vector<std::int32_t> points;
  std::vector<bool> begins;
};

// None when the text is not valid UTF-8.
[[nodiscard]] std::optional<ModelText> FoldByModel(std::string_view text);

[[nodiscard]] bool ContainsByModel(std::string_view text, std::string_view term);

// utf8proc's normal forms.
[[nodiscard]] std::string Composed(std::string_view text);
[[nodiscard]] std::string Decomposed(std::string_view text);

[[nodiscard]] std::string Utf8(std::int32_t point);

}  // namespace tavrel::test
