// Numbers and times as people read them; the same in every locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavrel::host {

// "1,234,567"
[[nodiscard]] std::string Grouped(std::int64_t number);

// "1 song", "1,234 songs": the plural takes an s.
[[nodiscard]] std::string Counted(std::int64_t number, std::string_view noun);

// "0 bytes", "999 bytes", "1.2 kB", "345 MB", "4.5 GB": thousands, with a decimal below ten.
[[nodiscard]] std::string SizeText(std::uint64_t bytes);

// How many units a number is that is not negative, halves counting up.
[[nodiscard]] constexpr std::int64_t Rounded(std::int64_t number, std::int64_t unit) noexcept {
  return number / unit + (number % unit >= unit / 2 ? 1 : 0);
}

// "4:05" or "1:02:03", rounded to seconds; empty for a time that is not positive.
[[nodiscard]] std::string Clock(std::int64_t milliseconds);

// "45 seconds", "12 minutes", "3 hours 12 minutes"; rounded down to the last unit shown.
[[nodiscard]] std::string Span(std::int64_t milliseconds);

}  // namespace tavrel::host
