// What the library writes to standard error while it works.
#pragma once

namespace tavrel::host {

// Keeps what is written to standard error, and shows it when the object goes: the library's own
// messages may quote any text of the library file, and this program may have a better one. On a
// terminal messages are made fit for it; anything else gets them as they are.
class MessageGuard {
 public:
  MessageGuard() noexcept;
  MessageGuard(const MessageGuard&) = delete;
  MessageGuard& operator=(const MessageGuard&) = delete;
  ~MessageGuard();

  // Shows what was written so far.
  void Show() noexcept;

  // Forgets what was written so far.
  void Discard() noexcept;

  // Keeps nothing from now on but for a terminal: a log gets each message at its time.
  void KeepForTerminalsOnly() noexcept;

 private:
  [[nodiscard]] bool IsKeeping() const noexcept { return kept_ >= 0 && original_ >= 0; }

  int kept_ = -1;      // the file that takes the messages
  int original_ = -1;  // standard error as it was
};

}  // namespace tavrel::host
