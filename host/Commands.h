// What the program can do: one file in commands/ each.
//
// A new subcommand NAME is a file commands/Name.cpp that defines AddName(), and a line in the list
// below.
#pragma once

#include <CLI/App.hpp>

#include "host/Options.h"
#include "host/library/Library.h"
#include "host/output/Output.h"
#include "host/output/StandardStreams.h"
#include "host/output/Terminal.h"

#define TAVREL_HOST_SUBCOMMANDS(Add) \
  Add(Artwork) Add(Playlists) Add(Ringtones) Add(Search) Add(Songs)

namespace tavrel::host {

// What a command works with, once the library is loaded.
struct Session {
  const Options& options;
  const std::string& libraryPath;          // as the user named it
  const std::optional<std::string>& home;  // where the library was told to read; none: the user's
  const Library& library;
  const Terminal& terminal;
  MessageGuard& messages;
  Output& output;
};

// A file's path as the user knows it: with --library, what lies in the temporary home lies beside
// the library file.
[[nodiscard]] std::string UserPath(const Session& session, std::string_view location);

// Each describes its arguments to `parser` and puts itself into `run` when it is the one chosen.
#define TAVREL_HOST_DECLARE(Name) void Add##Name(CLI::App& parser, Run& run);
TAVREL_HOST_SUBCOMMANDS(TAVREL_HOST_DECLARE)
#undef TAVREL_HOST_DECLARE

// Without a subcommand.
ExitCode ShowOverview(Session& session);

}  // namespace tavrel::host
