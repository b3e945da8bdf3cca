// Where a match stands in a text.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/output/TextRange.h"
#include "text/TextSearch.h"

namespace tavrel::host {

// The first match of `term` in `text`, whole characters with their marks; none when there is none.
[[nodiscard]] std::optional<TextRange> FindRange(std::string_view text,
                                                 const text::SearchTerm& term);

// Appends `text` as it compares without its accents and case. Cost: linear.
void AppendAccentless(std::string& target, std::string_view text);

// A text that is looked for without its accents and case.
class AccentlessTerm {
 public:
  explicit AccentlessTerm(std::string_view part);

  // The first place of it in `text`; none when there is none, or when nothing but accents is looked for.
  // Cost: linear, whatever the texts hold.
  [[nodiscard]] std::optional<TextRange> FindIn(std::string_view text) const;

 private:
  std::string wanted_;
};

}  // namespace tavrel::host
