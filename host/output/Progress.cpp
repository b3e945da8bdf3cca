#include "host/output/Progress.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

namespace tavrel::host {
namespace {

constexpr std::chrono::milliseconds kBetween{100};
constexpr std::size_t kWidestBar = 30;

bool CanErase() {
  const char* terminal = std::getenv("TERM");
  return ::isatty(STDOUT_FILENO) == 1 && terminal != nullptr &&
         std::string_view(terminal) != "dumb";
}

}  // namespace

std::string ProgressLine(std::size_t done, std::size_t total, double seconds, std::size_t width) {
  const double rate = seconds > 0 ? static_cast<double>(done) / seconds : 0;
  std::string text = fmt::format(" {}/{}", done, total);
  if (rate > 0) {
    const double left = std::ceil(static_cast<double>(total - std::min(done, total)) / rate);
    text += fmt::format("  {:.0f}/s  {:.0f} s left", rate, left);
  }
  if (width < text.size() + 6) return text.substr(1, width);
  const std::size_t bar = std::min(kWidestBar, width - text.size() - 3);
  const std::size_t filled = total == 0 ? bar : bar * std::min(done, total) / total;
  return fmt::format("[{:#<{}}{:{}}]{}", "", filled, "", bar - filled, text);
}

Progress::Progress(std::size_t total, const Terminal& terminal, Output& output, bool isQuiet)
    : total_(total), isShown_(!isQuiet && CanErase()), width_(terminal.width), output_(output) {}

Progress::~Progress() {
  // Each step has written all that there was. What cannot be erased stays: nothing is thrown here.
  if (isOnScreen_) WriteAll(STDOUT_FILENO, "\r\x1b[K");
}

void Progress::Step() {
  ++done_;
  if (!isShown_ || Clock::now() - lastShown_ < kBetween) return;
  lastShown_ = Clock::now();
  isOnScreen_ = true;
  const std::chrono::duration<double> passed = lastShown_ - start_;
  output_.Write(fmt::format("\r{}\x1b[K", ProgressLine(done_, total_, passed.count(), width_ - 1)));
  output_.Flush();
}

}  // namespace tavrel::host
