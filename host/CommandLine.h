// The command line: which command, with which options.
#pragma once

#include <functional>

#include "host/library/Options.h"
#include "host/library/Session.h"
#include "host/output/Failure.h"
#include "host/output/Output.h"

namespace tavrel::host {

// Which library a command cannot do without.
enum class LibraryNeed {
  Readable,         // one that can be read
  ReadableIfThere,  // none, but one that is there must be readable
  None,             // it works the same without
};

struct CommandLine {
  Options options;
  // The command; none when the program has printed what was asked for, its help say.
  std::function<ExitCode(Session&)> run;
  LibraryNeed need = LibraryNeed::Readable;
};

// Prints help and version where they are asked for. A wrong command line is a Failure.
[[nodiscard]] CommandLine ReadCommandLine(int count, const char* const* arguments, Output& output);

}  // namespace tavrel::host
