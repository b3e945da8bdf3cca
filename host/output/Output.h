// What the program prints: data on standard output, messages on standard error.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::host {

// Buffered standard output. Nothing is lost silently: a failed write is a Failure, with an empty
// message when the reader of a pipe has gone away, which is no news to anybody.
class Output {
 public:
  void Write(std::string_view text);
  void WriteLine(std::string_view text) {
    Write(text);
    Write("\n");
  }
  void Flush();

 private:
  std::string buffer_;
};

// Shows lines, made fit for a terminal, on standard error. The line feed behind the last one may be
// missing.
void ShowMessages(std::string_view lines);

// The same for what is no terminal: as they are.
void PassOnMessages(std::string_view lines) noexcept;

// Shows a message of this program, which may have several lines, in the same way, with "tavrel: "
// before it.
void Complain(const std::string& message);

}  // namespace tavrel::host
