// The command line: which command, with which options.
#pragma once

#include <string>

#include "host/arguments/CommandDefinition.h"
#include "host/library/Options.h"

namespace tavrel::host {

struct CommandLine {
  Options options;
  Task task;
  std::string text;  // what is to be printed when there is nothing to run: the program's help, say
};

// A wrong command line is a Failure, which says what may have been meant.
[[nodiscard]] CommandLine ReadCommandLine(int count, const char* const* arguments);

}  // namespace tavrel::host
