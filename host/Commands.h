// What the program can do: one file in commands/ each.
//
// A new subcommand NAME is a file commands/Name.cpp that defines AddName(), and a line in the list
// below.
#pragma once

#include <CLI/App.hpp>

#include "host/LibraryHandle.h"
#include "host/Options.h"
#include "host/Output.h"
#include "host/Terminal.h"

#define TAVREL_HOST_SUBCOMMANDS(Add) Add(Playlists) Add(Songs)

namespace tavrel::host {

// What a command works with, once the library is loaded.
struct Session {
  const Options& options;
  const std::string& libraryPath;  // as the user named it
  const Library& library;
  const Terminal& terminal;
  Output& output;
};

// Each describes its arguments to `parser` and puts itself into `run` when it is the one chosen.
#define TAVREL_HOST_DECLARE(Name) void Add##Name(CLI::App& parser, Run& run);
TAVREL_HOST_SUBCOMMANDS(TAVREL_HOST_DECLARE)
#undef TAVREL_HOST_DECLARE

// Without a subcommand.
ExitCode ShowOverview(Session& session);

}  // namespace tavrel::host
