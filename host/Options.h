// The command line.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "host/Failure.h"
#include "host/output/Output.h"

namespace tavrel::host {

// The options that every subcommand takes.
struct Options {
  std::optional<std::string> home;     // a folder that holds Music/iTunes
  std::optional<std::string> library;  // a library file under any name
  bool json = false;
};

struct Session;

// What a subcommand does.
class Run : public std::function<ExitCode(Session&)> {
 public:
  using function::function;
  bool needsLibrary = true;  // false: it also runs when no library could be loaded
};

struct CommandLine {
  Options options;
  Run run;  // the subcommand; none when the program has printed what was asked for, its help say
};

// Prints help and version where they are asked for. A wrong command line is a Failure.
[[nodiscard]] CommandLine ReadCommandLine(int count, const char* const* arguments, Output& output);

}  // namespace tavrel::host
