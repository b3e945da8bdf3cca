#include "host/output/Pager.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "system/Uninterrupted.h"

extern char** environ;

namespace tavrel::host {
namespace {

constexpr const char* kUsualPager = "less -FRSX";
constexpr std::size_t kUsualRows = 24;

bool HasLess() {
  const char* path = std::getenv("PATH");
  std::string_view rest = path != nullptr ? path : "";
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(':'), rest.size());
    const std::string file = std::string(rest.substr(0, end)) + "/less";
    if (end > 0 && ::access(file.c_str(), X_OK) == 0) return true;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return false;
}

// What the pager does with the terminal is its own matter, and what this program ignores is not its wish.
void SetSignals(posix_spawnattr_t& attributes) {
  sigset_t usual;
  ::sigemptyset(&usual);
  for (const int number : {SIGINT, SIGQUIT, SIGPIPE, SIGXFSZ}) ::sigaddset(&usual, number);
  ::posix_spawnattr_setsigdefault(&attributes, &usual);
  ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
}

}  // namespace

std::string PagerCommand() {
  const char* terminal = std::getenv("TERM");
  const bool isDumb = terminal == nullptr || std::string_view(terminal) == "dumb";
  if (::isatty(STDOUT_FILENO) != 1 || isDumb) return {};
  const char* chosen = std::getenv("PAGER");
  if (chosen == nullptr) return HasLess() ? kUsualPager : "";
  return std::string_view(chosen) == "cat" ? "" : chosen;
}

std::size_t RowsOfTerminal() noexcept {
  winsize size{};
  const bool isKnown = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_row > 0;
  return isKnown ? size.ws_row : kUsualRows;
}

Pager::Pager(const std::string& command, int messages) {
  int ends[2];
  if (::pipe(ends) != 0) return;
  for (const int end : ends) ::fcntl(end, F_SETFD, FD_CLOEXEC);
  ::setenv("LESS", "FRSX", 0);  // for a pager that is called "less" without options

  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, ends[0], STDIN_FILENO);
  ::posix_spawn_file_actions_adddup2(&actions, messages, STDERR_FILENO);
  posix_spawnattr_t attributes;
  ::posix_spawnattr_init(&attributes);
  SetSignals(attributes);
  std::string text = command;
  char shell[] = "sh";
  char option[] = "-c";
  char* const arguments[] = {shell, option, text.data(), nullptr};
  if (::posix_spawn(&process_, "/bin/sh", &actions, &attributes, arguments, environ) != 0) {
    process_ = -1;
  }
  ::posix_spawnattr_destroy(&attributes);
  ::posix_spawn_file_actions_destroy(&actions);
  ::close(ends[0]);
  if (process_ < 0) {
    ::close(ends[1]);
    return;
  }
  input_ = ends[1];
  ::signal(SIGINT, SIG_IGN);
  ::signal(SIGQUIT, SIG_IGN);
}

Pager::~Pager() {
  if (!IsRunning()) return;
  ::close(input_);
  int status = 0;
  (void)system::Uninterrupted([&] { return ::waitpid(process_, &status, 0); });
}

}  // namespace tavrel::host
