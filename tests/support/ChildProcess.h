// Runs a program with its output captured, on pipes or on terminals.
#pragma once

#include <sys/resource.h>
#include <sys/types.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tavrel::test {

// Where one of the program's output streams leads.
enum class Stream {
  Pipe,        // captured
  Terminal,    // a terminal of its own; captured, with the terminal's "\r\n" as "\n"
  BrokenPipe,  // a pipe whose reader has gone away
  Full,        // a device on which there is no room
  Closed,      // not open at all
};

struct Command {
  std::vector<std::string> arguments;  // the first one is the program's path
  // Changes to this process' environment; a variable without a value is removed.
  std::map<std::string, std::optional<std::string>> environment;
  std::string folder;  // to run in; empty: this process' own
  Stream output = Stream::Pipe;
  Stream errors = Stream::Pipe;
  unsigned short columns = 80;  // of terminals; 0: the terminal does not know
  std::vector<int> ignoredSignals;
  uid_t user = 0;                  // run as this user, where this process may choose; 0: no change
  rlim_t addressSpace = 0;         // limit in bytes; 0: none
  std::optional<rlim_t> fileSize;  // limit in bytes of what it writes
};

struct Outcome {
  std::string output;
  std::string errors;
  int exitCode = -1;  // -1: a signal ended it
  int signal = 0;
};

// A running program.
class ChildProcess {
 public:
  explicit ChildProcess(const Command& command);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  void Signal(int number) const;
  [[nodiscard]] Outcome Finish();

 private:
  pid_t process_;
  int output_;  // -1: not captured
  int errors_;
};

[[nodiscard]] Outcome RunProgram(const Command& command);

}  // namespace tavrel::test
