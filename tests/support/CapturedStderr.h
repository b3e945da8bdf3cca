// What is written to standard error during the life of an object, for tests of the system log.
#pragma once

#include <string>
#include <vector>

namespace tavrel::test {

class CapturedStderr {
 public:
  CapturedStderr();
  CapturedStderr(const CapturedStderr&) = delete;
  CapturedStderr& operator=(const CapturedStderr&) = delete;
  ~CapturedStderr();

  // Everything written so far.
  [[nodiscard]] std::string Text() const;
  // The messages of the log lines written so far: what stands behind "time program[pid] ". A line
  // that does not begin like that is reported as a failure of the test.
  [[nodiscard]] std::vector<std::string> Messages() const;

 private:
  int saved_;
  int file_;
};

// The message of one log line (without its line feed), after a check of what stands before it.
[[nodiscard]] std::string MessageOfLine(const std::string& line);

}  // namespace tavrel::test
