// The command line: which command, with which options.
#pragma once

#include <functional>
#include <string>

#include "host/library/Options.h"
#include "host/library/Session.h"
#include "host/output/Failure.h"

namespace tavrel::host {

// Which library a command cannot do without.
enum class LibraryNeed {
  Readable,         // one that can be read
  ReadableIfThere,  // none, but one that is there must be readable
  None,             // it works the same without
};

struct CommandLine {
  Options options;
  // The command; none when `text` is all that was asked for, the program's help say.
  std::function<ExitCode(Session&)> run;
  std::string text;
  bool isPaged = true;  // long output may go through the pager
  LibraryNeed need = LibraryNeed::Readable;
};

// A wrong command line is a Failure, which says what may have been meant.
[[nodiscard]] CommandLine ReadCommandLine(int count, const char* const* arguments);

}  // namespace tavrel::host
