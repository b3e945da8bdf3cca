// Where a match stands in a text.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "text/TextSearch.h"

namespace tavrel::host {

struct TextRange {
  std::size_t from;  // byte offsets
  std::size_t to;
};

// The first match of `term` in `text`, whole characters with their marks; none when there is none.
[[nodiscard]] std::optional<TextRange> FindRange(std::string_view text,
                                                 const text::SearchTerm& term);

// The first place of `part` in `text`, where letters are compared without their accents and case;
// none when there is none.
[[nodiscard]] std::optional<TextRange> FindRangeWithoutAccents(std::string_view text,
                                                               std::string_view part);

}  // namespace tavrel::host
