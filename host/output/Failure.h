// How the program ends, and the one exception that carries an end upwards.
#pragma once

#include <stdexcept>
#include <string>

namespace tavrel::host {

enum class ExitCode {
  Done = 0,
  Failed = 1,      // nothing found, or a part of the work failed
  Usage = 2,       // the command line is wrong
  NoLibrary = 3,   // there is no library file
  Unreadable = 4,  // there is one, but it cannot be used
};

// Ends the program with `code`, after `message` on standard error; an empty message is not shown.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode exitCode, const std::string& message)
      : std::runtime_error(message), code(exitCode) {}

  ExitCode code;
};

}  // namespace tavrel::host
