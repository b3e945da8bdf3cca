#include "host/output/Progress.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

#include "host/output/Format.h"

namespace tavrel::host {
namespace {

constexpr std::chrono::milliseconds kBetween{100};
constexpr std::size_t kWidestBar = 30;
constexpr double kLongInSeconds = 120;
constexpr double kLongestInSeconds = 1e9;

std::string TimeLeft(double seconds) {
  if (seconds < kLongInSeconds) return fmt::format("{:.0f} s", seconds);
  return Span(static_cast<std::int64_t>(std::min(seconds, kLongestInSeconds)) * 1000);
}

bool CanErase() {
  const char* terminal = std::getenv("TERM");
  return ::isatty(STDOUT_FILENO) == 1 && terminal != nullptr &&
         std::string_view(terminal) != "dumb";
}

}  // namespace

std::string ProgressLine(std::uint64_t done, std::uint64_t total, double seconds, std::size_t width,
                         ProgressOf what) {
  const auto amount = [what](std::uint64_t count) {
    return what == ProgressOf::Bytes ? SizeText(count) : fmt::to_string(count);
  };
  const double rate = seconds > 0 ? static_cast<double>(done) / seconds : 0;
  std::string text = fmt::format(" {}/{}", amount(done), amount(total));
  if (rate > 0) {
    const double left = std::ceil(static_cast<double>(total - std::min(done, total)) / rate);
    const auto aSecond = static_cast<std::uint64_t>(std::llround(rate));
    text += fmt::format("  {}/s  {} left", amount(aSecond), TimeLeft(left));
  }
  if (width < text.size() + 6) return text.substr(1, width);
  const std::size_t bar = std::min(kWidestBar, width - text.size() - 3);
  const double part =
      total == 0 ? 1 : static_cast<double>(std::min(done, total)) / static_cast<double>(total);
  const auto filled = static_cast<std::size_t>(static_cast<double>(bar) * part);
  return fmt::format("[{:#<{}}{:{}}]{}", "", filled, "", bar - filled, text);
}

Progress::Progress(std::uint64_t total, const Terminal& terminal, Output& output, bool isQuiet,
                   ProgressOf what)
    : total_(total),
      what_(what),
      isShown_(!isQuiet && CanErase()),
      width_(terminal.width),
      output_(output) {}

Progress::~Progress() {
  // Each step has written all that there was. What cannot be erased stays: nothing is thrown here.
  if (isOnScreen_) WriteAll(STDOUT_FILENO, "\r\x1b[K");
}

void Progress::Step(std::uint64_t done) {
  done_ += done;
  if (!isShown_ || Clock::now() - lastShown_ < kBetween) return;
  lastShown_ = Clock::now();
  isOnScreen_ = true;
  const std::chrono::duration<double> passed = lastShown_ - start_;
  output_.Write(
      fmt::format("\r{}\x1b[K", ProgressLine(done_, total_, passed.count(), width_ - 1, what_)));
  output_.Flush();
}

}  // namespace tavrel::host
