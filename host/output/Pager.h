// The program that shows long output page by page.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>

#include "system/Files.h"

namespace tavrel::host {

// The command that $PAGER names, "less -FRSX" when it is not set and there is one; empty when nothing is to be
// paged: standard output is no terminal or a dumb one, or $PAGER is empty or "cat".
[[nodiscard]] std::string PagerCommand();

// The rows of the terminal that standard output is; 24 when it does not know.
[[nodiscard]] std::size_t RowsOfTerminal() noexcept;

// A running pager. From its start on this program leaves the keys that interrupt to it.
class Pager {
 public:
  // messages: the descriptor of standard error for it. One that cannot be started is not running.
  Pager(const std::string& command, int messages);
  Pager(const Pager&) = delete;
  Pager& operator=(const Pager&) = delete;
  // Waits until the user has seen enough.
  ~Pager();

  [[nodiscard]] bool IsRunning() const noexcept { return process_ > 0; }
  [[nodiscard]] int Descriptor() const noexcept { return input_; }

 private:
  pid_t process_ = -1;
  int input_ = -1;
};

}  // namespace tavrel::host
