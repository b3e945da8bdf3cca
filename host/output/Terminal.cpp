#include "host/output/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>

namespace tavrel::host {
namespace {

constexpr std::size_t kWidthOfUnknown = 80;

std::string_view Environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::size_t WidthOfTerminal() {
  winsize size{};
  return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

// 0 when $COLUMNS is not a positive number.
std::size_t WidthOfEnvironment() {
  const std::string_view text = Environment("COLUMNS");
  unsigned short width = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), width);
  return error == std::errc() && end == text.data() + text.size() ? width : 0;
}

std::string_view Start(Style style) {
  switch (style) {
    case Style::Bold:
      return "\x1b[1m";
    case Style::Dim:
      return "\x1b[2m";
    case Style::Marked:
      return "\x1b[1;33m";  // bold and yellow
    case Style::Plain:
      break;
  }
  return {};
}

}  // namespace

std::string Terminal::Styled(Style style, std::string_view text) const {
  if (!styled || style == Style::Plain || text.empty()) return std::string(text);
  return std::string(Start(style)).append(text).append("\x1b[0m");
}

Terminal DescribeStandardOutput(ColorUse color) {
  const bool isTerminal = ::isatty(STDOUT_FILENO) == 1;
  std::size_t width = isTerminal ? WidthOfTerminal() : 0;
  if (width == 0) width = WidthOfEnvironment();
  if (width == 0 && isTerminal) width = kWidthOfUnknown;
  if (color != ColorUse::Auto) return {width, color == ColorUse::Always};
  const bool styled =
      isTerminal && Environment("NO_COLOR").empty() && Environment("TERM") != "dumb";
  return {width, styled};
}

}  // namespace tavrel::host
