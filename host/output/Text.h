// Texts of unknown content, made fit for a terminal, measured in its columns, and compared.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::host {

// U+FFFD, which stands for each byte that is not UTF-8.
inline constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

// The character that a text, which is not empty, begins with.
struct Character {
  std::int32_t code;   // -1: the first byte is not UTF-8
  std::size_t length;  // in bytes
};
[[nodiscard]] Character FirstCharacter(std::string_view text) noexcept;

// Whether a character only does something to what is around it, a terminal included: control characters
// (C0, DEL, C1), the marks that order, isolate or tag text, and those that show nothing. Joiners are not
// among them, nor soft hyphens and variation selectors: what they do is part of how a text is written.
[[nodiscard]] bool IsUnseen(std::int32_t code) noexcept;

// Appends `text` without anything that a terminal could take for a command: unseen characters go, tabs and
// line ends become one blank, together with the blanks around them, every byte that is not UTF-8 becomes
// U+FFFD, and of the marks that follow a character the first 30 stay, which is as many as Unicode's
// stream-safe texts have. Result: the columns that the appended text takes.
std::size_t AppendClean(std::string& destination, std::string_view text);
[[nodiscard]] std::string Clean(std::string_view text);

// The columns that a clean text takes: 2 for a wide East Asian character, 0 for a combining mark.
[[nodiscard]] std::size_t Width(std::string_view clean);

// The longest prefix of a clean text that takes at most `columns`; combining marks stay with their
// base.
[[nodiscard]] std::string_view Prefix(std::string_view clean, std::size_t columns);

// The longest suffix of a clean text that takes at most `columns` and does not begin with a
// combining mark.
[[nodiscard]] std::string_view Suffix(std::string_view clean, std::size_t columns);

// Parts of one line, put together with blanks, and on further lines, indented, where they would be
// wider than `width` columns; 0: no limit. A part stays whole unless it is wider than a line itself,
// and is broken at its blanks then.
[[nodiscard]] std::vector<std::string> FoldLine(const std::vector<std::string>& cleanParts,
                                                std::size_t width);

// A text as it compares: texts that differ in case only, or in how their accents are composed, are
// equal.
[[nodiscard]] std::string Fold(std::string_view text);

// A file name as the least exact file systems compare it: as above, without the characters that
// have no shape of their own (joiners, soft hyphens), and a dotless i as an i.
[[nodiscard]] std::string FoldFileName(std::string_view name);

// The text with its accents composed, so that texts that look alike are alike.
[[nodiscard]] std::string Compose(std::string_view text);

}  // namespace tavrel::host
