// What is said on standard error: the library's messages, and this program's own.
#pragma once

#include <cstdint>
#include <string>

#include "system/Files.h"

namespace tavrel::host {

// Shows a message, which may have several lines, with "tavrel: " before it; behind what the library has
// said so far. Made fit for a terminal, wherever it goes.
void Complain(const std::string& message);

// How many bytes the library has logged since its messages were last shown or dropped: as many behind a call as
// before it, when the call has logged nothing. 0 while no guard keeps them.
[[nodiscard]] std::int64_t LoggedBytes() noexcept;

// Whether what the library logs is shown, or dropped.
enum class LogLines { Shown, Dropped };

// Keeps what is written to standard error, and where it is to be shown shows it, cleaned, when the object
// goes: the library's own messages may quote any text of the library file, and this program may have a better
// one. They are cleaned for pipes and files as well, which somebody shows on a terminal one day. One at a
// time.
//
// They are kept in memory, else in a file without a name. One that there is no room for is lost; none comes
// through as it is.
class MessageGuard {
 public:
  // A Failure when nothing can be kept.
  explicit MessageGuard(LogLines lines);
  MessageGuard(const MessageGuard&) = delete;
  MessageGuard& operator=(const MessageGuard&) = delete;
  ~MessageGuard();

  // Shows, or drops, what was written so far.
  void Show() noexcept;

  // Forgets what was written so far.
  void Discard() noexcept;

 private:
  friend void Complain(const std::string& message);
  friend std::int64_t LoggedBytes() noexcept;

  LogLines lines_;
  system::FileDescriptor kept_;      // the file that takes the messages
  system::FileDescriptor original_;  // standard error as it was
};

}  // namespace tavrel::host
