// The three standard descriptors, made safe before anything else runs.
#pragma once

namespace tavrel::host {

// Makes sure that descriptors 0, 1 and 2 are open, so that no file of ours is opened as one of
// them; one that was closed cannot be written to. Makes a write to a closed pipe an error instead
// of a signal.
void PrepareStandardDescriptors() noexcept;

// Which messages a MessageGuard keeps.
enum class Messages { OnATerminal, Always };

// While standard error is a terminal, keeps what is written to it and shows it, made fit for a
// terminal, when the object goes: the library's own messages may quote any text of the library
// file. Anything else that standard error may be gets the messages directly and as they are.
class MessageGuard {
 public:
  explicit MessageGuard(Messages kept = Messages::OnATerminal) noexcept;
  MessageGuard(const MessageGuard&) = delete;
  MessageGuard& operator=(const MessageGuard&) = delete;
  ~MessageGuard();

  // Shows what was written so far.
  void Show() noexcept;

  // Forgets what was written so far.
  void Discard() noexcept;

 private:
  int kept_ = -1;      // the file that takes the messages; negative: the guard does nothing
  int terminal_ = -1;  // standard error as it was
};

}  // namespace tavrel::host
