#include "host/output/Format.h"

#include <fmt/format.h>

#include <array>

namespace tavrel::host {
namespace {

constexpr std::int64_t kSecond = 1000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kHour = 60 * kMinute;

}  // namespace

std::string Grouped(std::int64_t number) {
  std::string digits = fmt::to_string(number);
  const std::size_t first = number < 0 ? 1 : 0;
  for (std::size_t at = digits.size(); at > first + 3;) {
    at -= 3;
    digits.insert(at, 1, ',');
  }
  return digits;
}

std::string Counted(std::int64_t number, std::string_view noun) {
  return fmt::format("{} {}{}", Grouped(number), noun, number == 1 ? "" : "s");
}

std::string SizeText(std::uint64_t bytes) {
  constexpr std::array<std::string_view, 6> kUnits{"kB", "MB", "GB", "TB", "PB", "EB"};
  constexpr double kStep = 1000;
  constexpr double kRoundedUp = 999.5;  // what is more would be shown as a thousand
  if (bytes < 1000) return Counted(static_cast<std::int64_t>(bytes), "byte");
  double size = static_cast<double>(bytes) / kStep;
  std::size_t unit = 0;
  while (size >= kRoundedUp) {
    size /= kStep;
    ++unit;
  }
  return fmt::format("{:.{}f} {}", size, size < 9.95 ? 1 : 0, kUnits[unit]);
}

std::string Clock(std::int64_t milliseconds) {
  if (milliseconds <= 0) return {};
  const std::int64_t seconds = Rounded(milliseconds, kSecond);
  const std::int64_t hours = seconds / 3600;
  const std::int64_t minutes = seconds / 60 % 60;
  if (hours == 0) return fmt::format("{}:{:02}", minutes, seconds % 60);
  return fmt::format("{}:{:02}:{:02}", hours, minutes, seconds % 60);
}

std::string Span(std::int64_t milliseconds) {
  const std::int64_t minutes = milliseconds % kHour / kMinute;
  if (milliseconds < kMinute) return Counted(milliseconds / kSecond, "second");
  if (milliseconds < kHour) return Counted(minutes, "minute");
  const std::string hours = Counted(milliseconds / kHour, "hour");
  return minutes == 0 ? hours : hours + " " + Counted(minutes, "minute");
}

}  // namespace tavrel::host
