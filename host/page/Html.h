// Texts of unknown content as parts of an HTML file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tavrel::host {

// The text as HTML shows it, within elements and within attributes in double quotes. It is made clean first
// (host/output/Text.h), so that nothing in it orders what stands around it.
[[nodiscard]] std::string Escaped(std::string_view text);

// The same for a text that may be of any length: no more than so many characters of it, and "…" behind them.
[[nodiscard]] std::string EscapedStart(std::string_view text, std::size_t characters);

// The text as a value in an address: every byte but letters, digits and "-._~" as %XX.
[[nodiscard]] std::string InAddress(std::string_view text);

// What stands for the name of an album without a cover: its first letter or digit, in upper case where that
// is one character; empty for a name that has none.
[[nodiscard]] std::string Initial(std::string_view name);

// Base64 with padding, as one line.
[[nodiscard]] std::string Base64Text(std::string_view bytes);

// The bytes of hexadecimal digits in lower case, as Base64.
[[nodiscard]] std::string Base64OfHex(std::string_view digits);

}  // namespace tavrel::host
