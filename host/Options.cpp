#include "host/Options.h"

#include <CLI/CLI.hpp>

#include "host/Commands.h"

namespace tavrel::host {
namespace {

constexpr const char* kAbout =
    "Shows what is in an iTunes library, from outside iTunes.\n"
    "Without a subcommand: an overview of the library.\n";

constexpr const char* kFooter =
    R"(Examples:
  tavrel                            the overview of your own library
  tavrel playlists                  its playlists
  tavrel songs "My Favourites"      the songs of a playlist, by its name
  tavrel songs 2:0                  the same by group and position
  tavrel songs --all --json         every song, for other programs
  tavrel search dvořák              songs by name, artist or album
  tavrel search --artist dvořák     by the artist alone
  tavrel ringtones                  the ringtones
  tavrel ringtones add Tone.m4r     add one to iTunes
  tavrel artwork Music 3            the cover of a song, as a file here
  tavrel artwork --all -o covers    one cover for each album
  tavrel --library export.xml       a library file that lies elsewhere

Without --home and --library, "Music/iTunes/iTunes Music Library.xml" below
the home folder is read. Tables fit the terminal; what goes to a pipe or a
file is not cut, unless COLUMNS is set. NO_COLOR turns all styles off.

Exit codes: 0 done, 1 nothing found or something failed, 2 wrong usage,
3 there is no library file, 4 it cannot be read.)";

constexpr const char* kSubcommandFooter =
    "--home DIR, --library FILE and --json work here too; see tavrel --help.";

void AddGlobalOptions(CLI::App& parser, Options& options) {
  parser
      .add_option("--home", options.home, "Read Music/iTunes below this folder instead of your own")
      ->type_name("DIR");
  parser.add_option("--library", options.library, "Read this library file, whatever its name")
      ->type_name("FILE");
  parser.add_flag("--json", options.json, "Print JSON instead of tables");
}

void CheckGlobalOptions(const Options& options) {
  if (options.home && options.library) {
    throw CLI::ValidationError("--home and --library exclude each other");
  }
  if (options.home && options.home->empty())
    throw CLI::ValidationError("--home: the name is empty");
  if (options.library && options.library->empty()) {
    throw CLI::ValidationError("--library: the name is empty");
  }
}

}  // namespace

CommandLine ReadCommandLine(int count, const char* const* arguments, Output& output) {
  CommandLine line;
  CLI::App parser(kAbout, "tavrel");
  parser.set_help_flag("-h,--help", "Print this help");
  parser.set_version_flag("--version", "tavrel " TAVREL_VERSION, "Print the version");
  parser.require_subcommand(0, 1);
  parser.fallthrough();                      // global options also stand behind the subcommand
  parser.get_formatter()->column_width(20);  // before the first subcommand, which takes it over
  AddGlobalOptions(parser, line.options);

  Run chosen = ShowOverview;
#define TAVREL_HOST_ADD(Name) Add##Name(parser, chosen);
  TAVREL_HOST_SUBCOMMANDS(TAVREL_HOST_ADD)
#undef TAVREL_HOST_ADD
  for (CLI::App* subcommand : parser.get_subcommands({})) subcommand->footer(kSubcommandFooter);
  parser.footer(kFooter);

  try {
    parser.parse(count, arguments);
    CheckGlobalOptions(line.options);
    line.run = chosen;
  } catch (const CLI::CallForHelp&) {
    output.Write(parser.help());
  } catch (const CLI::CallForVersion& version) {
    output.WriteLine(version.what());
  } catch (const CLI::ParseError& error) {
    throw Failure(ExitCode::Usage, std::string(error.what()) + "\n  See tavrel --help.");
  }
  return line;
}

}  // namespace tavrel::host
