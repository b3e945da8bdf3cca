// The only source that knows how options are parsed: that takes a compiler longer than all else here.
#include "host/CommandLine.h"

#include <tavrel/tavrel.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/commands/Commands.h"
#include "host/help/CommandSummary.h"
#include "host/help/Completion.h"
#include "host/help/HelpText.h"
#include "host/help/ManualPage.h"
#include "host/help/Mistakes.h"
#include "host/library/Invocation.h"
#include "host/output/Terminal.h"
#include "system/Environment.h"

namespace tavrel::host {
namespace {

constexpr const char* kAbout =
    "Shows what is in an iTunes library, from outside iTunes. Without a command: an overview of "
    "the "
    "library.";

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
      ->option_text("auto|always|never");
  parser.add_flag("--no-pager", options.noPager, "Page nothing, also on a terminal");
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
    throw CLI::ValidationError("covers needs PLAYLIST SONG, or FILE, or --all");
  }
  if (arguments.all && (!arguments.target || arguments.target->empty())) {
    throw CLI::ValidationError("covers --all needs a folder: -o DIR");
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
  CLI::App* command = parser.add_subcommand("covers", "Write covers to files, or list them");
  command->alias("artwork");
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
    line.isPaged = false;
    line.need = NeedOf(*arguments);
    line.run = [arguments](Session& session) { return ShowArtwork(*arguments, session); };
  });
}

void AddPlaylists(CLI::App& parser, CommandLine& line) {
  const auto arguments = std::make_shared<PlaylistsArguments>();
  CLI::App* command = parser.add_subcommand("playlists", "Show the playlists in their folders");
  command->add_flag("--all", arguments->all, "Also built-in and empty ones");
  command
      ->add_option("--with", arguments->with.words,
                   "Only those that hold a song with this text; again: with all of them")
      ->type_name("TEXT")
      ->allow_extra_args(false);
  command->callback([&line, arguments] {
    line.run = [arguments](Session& session) { return ListPlaylists(*arguments, session); };
  });
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
    line.isPaged = false;
    line.run = [arguments](Session& session) { return AddRingtone(*arguments, session); };
  });
}

void AddSongListOptions(CLI::App& command, SongListOptions& list) {
  command
      .add_option("--fields", list.fields,
                  "What to show of each song, parted by commas: name,artist,year;\n"
                  "all: everything that the file says")
      ->type_name("A,B");
  command.add_option("--sort", list.sort, "Sort by these fields, the first one first")
      ->type_name("FIELD[,FIELD]");
  command.add_flag("--reverse", list.isReversed, "The other way round");
  command.add_option("--format", list.format, "table, json, jsonl, csv or tsv")
      ->option_text("FORMAT")
      ->check(CLI::IsMember({"table", "json", "jsonl", "csv", "tsv"}));
  command.add_flag("--spreadsheet", list.forSpreadsheet,
                   "With csv and tsv: an apostrophe before what a spreadsheet would run");
}

void Check(const SearchArguments& arguments) {
  const SongQuery& query = arguments.query;
  const std::vector<FieldTerm> terms = FieldTermsOf(query);
  if (query.words.empty() && terms.empty() && !query.years) {
    throw CLI::ValidationError("search needs a WORD, or --name, --artist, --album, ...");
  }
  const auto isEmpty = [](const std::string& text) { return text.empty(); };
  if (std::any_of(query.words.begin(), query.words.end(), isEmpty) ||
      std::any_of(terms.begin(), terms.end(),
                  [](const FieldTerm& term) { return term.text->empty(); })) {
    throw CLI::ValidationError("search: an empty text is never found");
  }
  if (query.years && !AreYears(*query.years)) {
    throw CLI::ValidationError("--year: a year, or two as in 1990-1999");
  }
}

void AddSearchTerms(CLI::App& command, SongQuery& query) {
  command
      .add_option("WORD", query.words,
                  "Texts that a song must hold, each anywhere in its name, artist,\n"
                  "album artist, album or composer; case and accents do not count")
      ->type_name("");
  command.add_flag(
      "--exact", query.exact,
      "Accents count, and words stand in name, artist or album: the library's own rule");
  command.add_option("--name", query.name, "A part of the name")->type_name("TEXT");
  command.add_option("--artist", query.artist, "A part of the artist")->type_name("TEXT");
  command.add_option("--album", query.album, "A part of the album")->type_name("TEXT");
  command.add_option("--composer", query.composer, "A part of the composer")->type_name("TEXT");
  command.add_option("--genre", query.genre, "A part of the genre")->type_name("TEXT");
  command.add_option("--year", query.years, "The year, or the first and the last one: 1990-1999")
      ->type_name("YEAR");
}

void AddSearch(CLI::App& parser, CommandLine& line) {
  const auto arguments = std::make_shared<SearchArguments>();
  CLI::App* command = parser.add_subcommand("search", "Find songs by words");
  AddSearchTerms(*command, arguments->query);
  command->add_option("--limit", arguments->limit, "Show so many songs at most")
      ->option_text("N")
      ->check(CLI::Range(1, 2147483647));
  command->add_flag("--count", arguments->countOnly, "Print the number of songs only");
  command->add_flag("--lists", arguments->withLists, "Also the playlists that hold each song");
  AddSongListOptions(*command, arguments->list);
  command->callback([&line, arguments] {
    Check(*arguments);
    line.run = [arguments](Session& session) { return SearchSongs(*arguments, session); };
  });
}

void AddSongs(CLI::App& parser, CommandLine& line) {
  const auto arguments = std::make_shared<SongsArguments>();
  CLI::App* command =
      parser.add_subcommand("songs", "List the songs of a playlist, or all of them");
  command
      ->add_option("LIST", arguments->playlist,
                   "A playlist: its name, Folder/Name, id:PERSISTENT-ID or GROUP:POSITION;\n"
                   "without it every song of the library, in the file's order")
      ->type_name("");
  command->add_flag("--all", arguments->all, "Every song, as without LIST");
  AddSongListOptions(*command, arguments->list);
  command->callback([&line, arguments] {
    if (arguments->all && arguments->playlist) {
      throw CLI::ValidationError("--all and LIST exclude each other");
    }
    line.run = [arguments](Session& session) { return ListSongs(*arguments, session); };
  });
}

void AddStatistics(CLI::App& parser, CommandLine& line) {
  const auto arguments = std::make_shared<StatisticsArguments>();
  CLI::App* command = parser.add_subcommand("stats", "Count songs and their time by a property");
  command
      ->add_option("--by", arguments->by,
                   "artist (unless told otherwise), albumArtist, album, composer, genre, year,\n"
                   "decade, rating, added or kind")
      ->option_text("FIELD")
      ->check(CLI::IsMember({"artist", "albumArtist", "album", "composer", "genre", "year",
                             "decade", "rating", "added", "kind"},
                            CLI::ignore_case));
  command->add_option("--top", arguments->top, "So many of those with the most songs, or all")
      ->option_text("N|all");
  command->callback([&line, arguments] {
    line.run = [arguments](Session& session) { return ShowStatistics(*arguments, session); };
  });
}

// What "help" and "completion" are asked for.
struct TextRequest {
  std::vector<std::string> command;
  bool isManual = false;
  std::string shell;  // empty: no completion
  bool isAsked = false;
};

void AddTexts(CLI::App& parser, CommandLine& line, TextRequest& request) {
  CLI::App* help = parser.add_subcommand("help", "Explain a command");
  help->add_option("COMMAND", request.command, "The command; without it, the program")
      ->type_name("");
  help->add_flag("--man", request.isManual, "Print the manual page, for man -l -");
  CLI::App* completion = parser.add_subcommand("completion", "Print completions for a shell");
  completion->add_option("SHELL", request.shell, "The shell")
      ->required()
      ->check(CLI::IsMember({"bash", "zsh", "fish"}))
      ->option_text("bash|zsh|fish");
  const auto ask = [&line, &request] {
    request.isAsked = true;
    line.run = nullptr;
  };
  help->callback(ask);
  completion->callback(ask);
}

// ---- The definition, as help, manual page and completions show it ----

std::string Unbroken(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

OptionSummary Summarize(const CLI::Option& option) {
  OptionSummary summary;
  for (const std::string& name : option.get_snames()) summary.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) summary.names.push_back("--" + name);
  summary.text = Unbroken(option.get_description());
  summary.isRequired = option.get_required();
  summary.isRepeated = option.get_items_expected_max() > 1;
  const bool takesOne = option.get_items_expected_max() > 0;
  const std::string& text = option.get_option_text();
  const bool isTold = text.find_first_not_of(' ') != std::string::npos;
  if (isTold) {
    summary.argument = text;
  } else if (summary.StandsByPlace()) {
    summary.argument = option.get_name();
  } else if (takesOne) {
    summary.argument = option.get_type_name();
  }
  return summary;
}

CommandSummary Summarize(const CLI::App& parser, const std::string& parent) {
  const bool isProgram = parent.empty();
  CommandSummary summary;
  summary.name = parser.get_name();
  summary.path = isProgram ? summary.name : parent + " " + summary.name;
  summary.aliases = parser.get_aliases();
  summary.text = Unbroken(parser.get_description());
  for (const CLI::Option* option : parser.get_options()) {
    if (isProgram || option != parser.get_help_ptr()) summary.options.push_back(Summarize(*option));
  }
  for (const CLI::App* command : parser.get_subcommands({})) {
    summary.commands.push_back(Summarize(*command, summary.path));
  }
  return summary;
}

// The command that the words lead to, and what was given to it by its place.
struct Reached {
  const CommandSummary* command;
  std::vector<std::string> words;
};

Reached FindReached(const CLI::App& parser, const CommandSummary& program) {
  const CLI::App* reached = &parser;
  const CommandSummary* command = &program;
  while (!reached->get_subcommands().empty()) {
    reached = reached->get_subcommands().back();
    const CommandSummary* next = command->Find(reached->get_name());
    if (next == nullptr) break;
    command = next;
  }
  std::vector<std::string> words;
  for (const CLI::Option* option : reached->get_options()) {
    if (!option->get_positional()) continue;
    words.insert(words.end(), option->results().begin(), option->results().end());
  }
  return {command, words};
}

const CommandSummary& Named(const CommandSummary& program, const std::vector<std::string>& names) {
  const CommandSummary* command = &program;
  for (const std::string& name : names) {
    const CommandSummary* next = command->Find(name);
    if (next == nullptr)
      throw Failure(ExitCode::Usage, NoSuchCommand(*command, name, "tavrel help "));
    command = next;
  }
  return *command;
}

std::string TextFor(const TextRequest& request, const CommandSummary& program) {
  if (!request.shell.empty()) return Completion(program, request.shell);
  if (request.isManual) return ManualPage(program, TAVREL_VERSION);
  return HelpText(program, Named(program, request.command),
                  DescribeStandardOutput(ColorUse::Never).width);
}

[[noreturn]] void FailForUsage(const std::string& message, const CommandSummary& command) {
  const std::size_t name = command.path.find(' ');
  const std::string rest = name == std::string::npos ? "" : command.path.substr(name);
  throw Failure(ExitCode::Usage, message + "\n  See tavrel help" + rest + ".");
}

}  // namespace

CommandLine ReadCommandLine(int count, const char* const* arguments) {
  CommandLine line;
  TextRequest request;
  CLI::App parser(kAbout, "tavrel");
  parser.set_help_flag("-h,--help", "Print this help");
  parser.set_version_flag("--version", "tavrel " TAVREL_VERSION, "Print the version");
  parser.require_subcommand(0, 1);
  parser.fallthrough();  // global options also stand behind the subcommand
  AddGlobalOptions(parser, line.options);

  line.run = ShowOverview;
  AddArtwork(parser, line);
  AddPlaylists(parser, line);
  AddRingtones(parser, line);
  AddSearch(parser, line);
  AddSongs(parser, line);
  AddStatistics(parser, line);
  AddTexts(parser, line, request);
  const CommandSummary program = Summarize(parser, "");

  try {
    parser.parse(count, arguments);
    CheckGlobalOptions(line.options);
    AskEnvironment(line.options);
    if (request.isAsked) line.text = TextFor(request, program);
    return line;
  } catch (const CLI::CallForHelp&) {
    line.text = HelpText(program, *FindReached(parser, program).command,
                         DescribeStandardOutput(ColorUse::Never).width);
  } catch (const CLI::CallForVersion& version) {
    line.text = version.what() + std::string("\n");
  } catch (const CLI::ExtrasError&) {
    const auto [command, words] = FindReached(parser, program);
    FailForUsage(ExplainExtras(program, *command, parser.remaining(true), words,
                               Invocation(line.options, "")),
                 *command);
  } catch (const CLI::ParseError& error) {
    FailForUsage(error.what(), *FindReached(parser, program).command);
  }
  line.run = nullptr;  // the text is all that was asked for
  return line;
}

}  // namespace tavrel::host
