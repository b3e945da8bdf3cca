// What the program prints on standard output.
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

// Writes all of the text, and waits where it must. Result: 0, or the error's number.
int WriteAll(int descriptor, std::string_view text) noexcept;

}  // namespace tavrel::host
