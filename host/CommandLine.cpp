#include "host/CommandLine.h"

#include <tavrel/tavrel.h>

#include <string>
#include <vector>

#include "host/arguments/CommandParser.h"
#include "host/commands/Commands.h"
#include "host/files/FilePlaces.h"
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
    "the library.";

// What is checked or translated only once it is read.
struct Requests {
  std::optional<std::string> color;
  std::optional<std::string> paths;
  std::vector<std::string> helpOn;  // names of commands
  bool isManual = false;
  std::string shell;  // empty: no completion
  bool isText = false;
};

void AddPathOptions(CommandDefinition program, PathOptions& paths, Requests& requests) {
  program.AddText("--music", paths.music, "DIR",
                  "Look for the files of songs below this folder, too");
  program.AddTexts("--map", paths.maps, "OLD=NEW",
                   "What was in the folder OLD of the library\n"
                   "is in NEW now; again: the longest OLD counts");
  program.AddChoice("--paths", requests.paths, {"auto", "nfc", "nfd", "raw"},
                    "The paths of files: as they are here (auto);\n"
                    "without a look at the disk with accents\n"
                    "composed (nfc), apart (nfd), or as the library\n"
                    "has them (raw)");
}

void AddGlobalOptions(CommandDefinition program, Options& options, Requests& requests) {
  program.AddText("--home", options.home, "DIR",
                  "Read Music/iTunes below this folder instead of your own");
  program.AddText("-l,--library", options.library, "PATH",
                  "Read this library: a file (also one that\n"
                  "gzip has compressed), a folder of iTunes,\n"
                  "a home folder, or - for standard input");
  AddPathOptions(program, options.paths, requests);
  program.AddFlag("--json", options.json, "Print JSON instead of tables");
  program.AddFlag("-q,--quiet", options.quiet, "Say nothing but what failed");
  program.AddFlag("-v,--verbose", options.verbose, "Show what the library logs, too");
  program.AddChoice("--color", requests.color, {"auto", "always", "never"},
                    "Use bold and colours: auto, always or never");
  program.AddFlag("--no-pager", options.noPager, "Page nothing, also on a terminal");
}

// Those that print a text of the program's own.
void AddTexts(CommandDefinition program, Requests& requests) {
  CommandDefinition help = program.AddCommand("help", "Explain a command");
  help.AddPlaces("COMMAND", requests.helpOn, 0, "The command; without it, the program");
  help.AddFlag("--man", requests.isManual, "Print the manual page, for man -l -");
  CommandDefinition completion = program.AddCommand("completion", "Print completions for a shell");
  completion.AddRequiredChoice("SHELL", requests.shell, {kShells.begin(), kShells.end()},
                               "The shell");
  const auto ask = [&requests] {
    requests.isText = true;
    return Task{};
  };
  help.Makes(ask);
  completion.Makes(ask);
}

ColorUse ColorUseOf(const std::optional<std::string>& color) {
  if (color == "always") return ColorUse::Always;
  return color == "never" ? ColorUse::Never : ColorUse::Auto;
}

PathForm PathFormOf(const std::optional<std::string>& paths) {
  if (paths == "nfc") return PathForm::Composed;
  if (paths == "nfd") return PathForm::Decomposed;
  return paths == "raw" ? PathForm::AsWritten : PathForm::Auto;
}

void CheckGlobalOptions(const Options& options) {
  if (options.home && options.library) {
    throw UsageError("--home and --library exclude each other");
  }
  if (options.home && options.home->empty()) throw UsageError("--home: the name is empty");
  if (options.library && options.library->empty()) {
    throw UsageError("--library: the name is empty");
  }
  if (options.paths.music && options.paths.music->empty()) {
    throw UsageError("--music: the name is empty");
  }
  CheckMappings(options.paths);
}

// $TAVREL_LIBRARY stands for --library where no option says which library.
void AskEnvironment(Options& options) {
  if (options.home || options.library) return;
  const char* library = system::TrustedVariable("TAVREL_LIBRARY");
  if (library == nullptr || *library == '\0') return;
  options.library = library;
  options.isLibraryOfEnvironment = true;
}

const CommandSummary& Named(const CommandSummary& program, const std::vector<std::string>& names) {
  const CommandSummary* command = &program;
  for (const std::string& name : names) {
    const CommandSummary* next = command->Find(name);
    if (next == nullptr)
      throw Failure(ExitCode::Usage, NoHelpOn(*command, name) + "\n  See tavrel help.");
    command = next;
  }
  return *command;
}

std::string HelpOn(const CommandSummary& program, const std::vector<std::string>& command) {
  return HelpText(program, Named(program, command), DescribeStandardOutput(ColorUse::Never).width);
}

std::string TextFor(const Requests& requests, const CommandSummary& program) {
  if (!requests.shell.empty()) return Completion(program, requests.shell);
  if (requests.isManual) return ManualPage(program, TAVREL_VERSION);
  return HelpOn(program, requests.helpOn);
}

[[noreturn]] void FailForUsage(const std::string& message,
                               const std::vector<std::string>& command) {
  std::string name;
  for (const std::string& word : command) name += " " + word;
  throw Failure(ExitCode::Usage, message + "\n  See tavrel help" + name + ".");
}

}  // namespace

CommandLine ReadCommandLine(int count, const char* const* arguments) {
  CommandLine line;
  Requests requests;
  CommandParser parser("tavrel", kAbout);
  AddGlobalOptions(parser.Program(), line.options, requests);
  DefineCommands(parser.Program());
  AddTexts(parser.Program(), requests);
  const CommandSummary program = parser.Summary();
  const ParsedWords parsed = parser.Parse(count, arguments);

  using Kind = ParsedWords::Kind;
  switch (parsed.kind) {
    case Kind::HelpAsked:
      line.text = HelpOn(program, parsed.command);
      return line;
    case Kind::VersionAsked:
      line.text = "tavrel " TAVREL_VERSION "\n";
      return line;
    case Kind::Wrong:
      FailForUsage(parsed.message, parsed.command);
    case Kind::TooMany:
      CheckMappings(line.options.paths);  // who parts OLD and NEW by a blank gives a word too many
      FailForUsage(ExplainExtras(program, Named(program, parsed.command), parsed.extras,
                                 parsed.words, Invocation(line.options, "")),
                   parsed.command);
    case Kind::BehindMark:
      FailForUsage(
          ExplainBehindMark(program, parsed.extras, parsed.words, Invocation(line.options, "")),
          {});
    case Kind::Understood:
      break;
  }
  try {
    CheckGlobalOptions(line.options);
  } catch (const UsageError& error) {
    FailForUsage(error.what(), parsed.command);
  }
  line.options.color = ColorUseOf(requests.color);
  line.options.paths.form = PathFormOf(requests.paths);
  AskEnvironment(line.options);
  line.task = parsed.task.value_or(Task{.run = ShowOverview});
  if (requests.isText) line.text = TextFor(requests, program);
  return line;
}

}  // namespace tavrel::host
