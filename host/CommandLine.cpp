// The only source that knows how options are parsed: that takes a compiler longer than all else here.
#include "host/CommandLine.h"

#include <tavrel/tavrel.h>

#include <CLI/CLI.hpp>
#include <map>
#include <memory>
#include <string>

#include "host/commands/Commands.h"
#include "system/Environment.h"

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
  tavrel -l export.xml              a library file that lies elsewhere
  tavrel -l /media/old-mac/me       that of another home or iTunes folder
  zcat old.xml.gz | tavrel -l -     one that comes from another program

Without --home and --library, "Music/iTunes/iTunes Music Library.xml" below
the home folder is read, or the newest library file that lies where iTunes
and Music put them. TAVREL_LIBRARY in the environment stands for --library.
Tables fit the terminal; what goes to a pipe or a file is not cut, unless
COLUMNS is set. NO_COLOR turns all styles off.

Exit codes: 0 done, 1 nothing found or something failed, 2 wrong usage,
3 there is no library file, 4 it cannot be read.)";

constexpr const char* kSubcommandFooter =
    "--home DIR, --library PATH and --json work here too; see tavrel --help.";

const std::map<std::string, ColorUse> kColorUses{
    {"auto", ColorUse::Auto}, {"always", ColorUse::Always}, {"never", ColorUse::Never}};

void AddGlobalOptions(CLI::App& parser, Options& options) {
  parser
      .add_option("--home", options.home, "Read Music/iTunes below this folder instead of your own")
      ->type_name("DIR");
  parser
      .add_option("-l,--library", options.library,
                  "Read this library: a file (also one that\n"
                  "gzip has compressed), a folder of iTunes,\n"
                  "a home folder, or - for standard input")
      ->type_name("PATH");
  parser.add_flag("--json", options.json, "Print JSON instead of tables");
  parser.add_flag("-q,--quiet", options.quiet, "Say nothing but what failed");
  parser.add_flag("-v,--verbose", options.verbose, "Show what the library logs, too");
  parser.add_option("--color", options.color, "Use bold and colours: auto, always or never")
      ->transform(CLI::CheckedTransformer(kColorUses))
      ->option_text("WHEN");
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

// $TAVREL_LIBRARY stands for --library where no option says which library.
void AskEnvironment(Options& options) {
  if (options.home || options.library) return;
  const char* library = system::TrustedVariable("TAVREL_LIBRARY");
  if (library == nullptr || *library == '\0') return;
  options.library = library;
  options.isLibraryOfEnvironment = true;
}

void Check(const ArtworkArguments& arguments) {
  const ExportOptions& exporting = arguments.exporting;
  if (arguments.all != arguments.names.empty()) {
    throw CLI::ValidationError("artwork needs PLAYLIST SONG, or FILE, or --all");
  }
  if (arguments.all && (!arguments.target || arguments.target->empty())) {
    throw CLI::ValidationError("artwork --all needs a folder: -o DIR");
  }
  if (arguments.all && arguments.list) {
    throw CLI::ValidationError("--list shows the images of one song or file, not of --all");
  }
  if (!arguments.all && (exporting.perSong || exporting.unclaimed)) {
    throw CLI::ValidationError("--per-song and --unclaimed need --all");
  }
  if (arguments.target && arguments.target->empty()) {
    throw CLI::ValidationError("-o: the name is empty");
  }
}

LibraryNeed NeedOf(const ArtworkArguments& arguments) {
  if (arguments.all && arguments.exporting.unclaimed) return LibraryNeed::ReadableIfThere;
  return arguments.names.size() == 1 ? LibraryNeed::None : LibraryNeed::Readable;
}

void AddArtwork(CLI::App& parser, CommandLine& line) {
  const auto arguments = std::make_shared<ArtworkArguments>();
  ExportOptions& exporting = arguments->exporting;
  CLI::App* command = parser.add_subcommand("artwork", "Write covers to files, or list them");
  command
      ->add_option("NAMES", arguments->names,
                   "PLAYLIST SONG: names, or positions as \"tavrel songs\" shows them;\n"
                   "or FILE: an artwork cache file (.itc2, .itc)")
      ->expected(1, 2)
      ->type_name("")
      ->option_text(" ");
  command
      ->add_option("-o,--output", arguments->target,
                   "The file to write (its extension follows the picture's type; - is standard\n"
                   "output), or the folder")
      ->type_name("FILE");
  command->add_flag("--list", arguments->list, "List the images instead");
  command->add_flag("--all", arguments->all, "One cover for each album of the library");
  command->add_flag("--per-song", exporting.perSong, "With --all: one for each song");
  command->add_flag("--unclaimed", exporting.unclaimed,
                    "With --all: also the cache files that belong to no song; the library\n"
                    "file may be missing then");
  command->add_flag("--force", exporting.force, "Replace files that are there");
  command->callback([&line, arguments] {
    Check(*arguments);
    if (arguments->all) arguments->exporting.folder = *arguments->target;
    line.need = NeedOf(*arguments);
    line.run = [arguments](Session& session) { return ShowArtwork(*arguments, session); };
  });
}

void AddPlaylists(CLI::App& parser, CommandLine& line) {
  CLI::App* command = parser.add_subcommand("playlists", "List the playlists");
  command->callback([&line] { line.run = ListPlaylists; });
}

void AddRingtones(CLI::App& parser, CommandLine& line) {
  const auto arguments = std::make_shared<RingtoneArguments>();
  CLI::App* command = parser.add_subcommand("ringtones", "List the ringtones, or add one");
  CLI::App* add = command->add_subcommand("add", "Add a ringtone to iTunes");
  add->add_option("FILE", arguments->file, "The ringtone's file")->required()->type_name("");
  add->add_flag("--force", arguments->force,
                "Send the script also when the file's path changes it");
  command->callback([&line, add, arguments] {
    line.run = ListRingtones;
    if (!add->parsed()) return;
    line.run = [arguments](Session& session) { return AddRingtone(*arguments, session); };
  });
}

void Check(SearchArguments& arguments) {
  SearchTerms& terms = arguments.terms;
  if (arguments.any.has_value() == (terms.name || terms.artist || terms.album)) {
    throw CLI::ValidationError("search needs either TERM or any of --name, --artist and --album");
  }
  if (arguments.any) terms = {arguments.any, arguments.any, arguments.any};
  for (const auto& term : {terms.name, terms.artist, terms.album}) {
    if (term && term->empty()) throw CLI::ValidationError("search: an empty text is never found");
  }
}

void AddSearch(CLI::App& parser, CommandLine& line) {
  const auto arguments = std::make_shared<SearchArguments>();
  SearchTerms& terms = arguments->terms;
  CLI::App* command =
      parser.add_subcommand("search", "Find songs by a part of their name, artist or album");
  command->add_option("TERM", arguments->any, "A part of any of them; accents count, case does not")
      ->type_name("");
  command->add_option("--name", terms.name, "A part of the name")->type_name("TEXT");
  command->add_option("--artist", terms.artist, "A part of the artist, as an alternative")
      ->type_name("TEXT");
  command->add_option("--album", terms.album, "A part of the album, as an alternative")
      ->type_name("TEXT");
  command->add_option("--limit", arguments->limit, "Stop after so many songs")
      ->option_text("N")
      ->check(CLI::Range(1, 2147483647));
  command->add_flag("--count", arguments->countOnly, "Print the number of songs only");
  command->callback([&line, arguments] {
    Check(*arguments);
    line.run = [arguments](Session& session) { return SearchSongs(*arguments, session); };
  });
}

void AddSongs(CLI::App& parser, CommandLine& line) {
  const auto arguments = std::make_shared<SongsArguments>();
  CLI::App* command = parser.add_subcommand("songs", "List the songs of a playlist");
  command
      ->add_option("PLAYLIST", arguments->playlist,
                   "Its name, or its position as \"tavrel playlists\" shows it")
      ->type_name("");
  command->add_flag("--all", arguments->all, "Every song of the library, in the file's order");
  command->callback([&line, arguments] {
    if (arguments->all == arguments->playlist.has_value()) {
      throw CLI::ValidationError("songs needs either PLAYLIST or --all");
    }
    line.run = [arguments](Session& session) { return ListSongs(*arguments, session); };
  });
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

  line.run = ShowOverview;
  AddArtwork(parser, line);
  AddPlaylists(parser, line);
  AddRingtones(parser, line);
  AddSearch(parser, line);
  AddSongs(parser, line);
  for (CLI::App* subcommand : parser.get_subcommands({})) subcommand->footer(kSubcommandFooter);
  parser.footer(kFooter);

  try {
    parser.parse(count, arguments);
    CheckGlobalOptions(line.options);
    AskEnvironment(line.options);
    return line;
  } catch (const CLI::CallForHelp&) {
    output.Write(parser.help());
  } catch (const CLI::CallForVersion& version) {
    output.WriteLine(version.what());
  } catch (const CLI::ParseError& error) {
    throw Failure(ExitCode::Usage, std::string(error.what()) + "\n  See tavrel --help.");
  }
  line.run = nullptr;  // what was asked for is printed
  return line;
}

}  // namespace tavrel::host
