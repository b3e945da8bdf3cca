// What standard output can show.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tavrel::host {

enum class Style { Plain, Bold, Dim, Marked };

struct Terminal {
  std::size_t width;  // in columns; 0: no limit
  bool styled;        // bold, dim and marked text may be used

  [[nodiscard]] std::string Styled(Style style, std::string_view text) const;
};

// Whether text may be styled: on a terminal that can show it, or as the user says.
enum class ColorUse { Auto, Always, Never };

// The width is that of the terminal, else what $COLUMNS says, else 80 for a terminal that does not
// know its own; a pipe or a file without $COLUMNS has no limit, so that nothing is cut from what
// other programs read. ColorUse::Auto: only a terminal gets styled text, and not when $NO_COLOR is set and
// not empty or $TERM is "dumb".
[[nodiscard]] Terminal DescribeStandardOutput(ColorUse color);

}  // namespace tavrel::host
