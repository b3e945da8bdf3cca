// Folding: the form in which texts are searched. Texts that differ only in case, or in how their
// characters are composed, have the same folded form: canonical decomposition, full case folding,
// canonical decomposition again, in UTF-8. No locale takes part.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tavrel::text {

// A folded text has at most this many bytes for each byte of the text.
inline constexpr std::size_t kFoldingGrowth = 3;

// Where folded texts go, one behind the other.
struct FoldingTarget {
  char* bytes;
  // One bit for each byte, zero-filled; null when nobody wants to know. It is set where the byte
  // begins a code point that must not be torn from the one before it: a combining mark, a later
  // part of a Hangul syllable or of another character that decomposes, a later part of what one
  // character folds to.
  std::uint64_t* joined;
};

// Folds `text` to `target`, from byte `at` on, where there must be room for kFoldingGrowth times
// its size.
// Result: the number of bytes written; 0 when the text is not valid UTF-8. None when memory is
//         exhausted, which takes more than 64 combining marks on one character.
// Cost: linear.
[[nodiscard]] std::optional<std::size_t> FoldText(std::string_view text,
                                                  const FoldingTarget& target,
                                                  std::size_t at) noexcept;

}  // namespace tavrel::text
