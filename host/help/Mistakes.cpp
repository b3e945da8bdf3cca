#include "host/help/Mistakes.h"

#include <sys/stat.h>

#include <algorithm>
#include <string_view>

#include "host/help/Guesses.h"
#include "host/library/Invocation.h"
#include "host/output/Nearest.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

std::string Suggestion(const std::vector<std::string>& lines) {
  if (lines.empty()) return {};
  std::string text = "; do you mean:";
  for (const std::string& line : lines) text += "\n    " + line;
  return text;
}

bool IsFileOrFolder(const std::string& word) {
  struct stat status {};
  return ::stat(word.c_str(), &status) == 0;
}

std::vector<std::string> OptionNames(const CommandSummary& command) {
  std::vector<std::string> names;
  for (const OptionSummary& option : command.options) {
    for (const std::string& name : option.names) {
      if (name.starts_with("--")) names.push_back(name);
    }
  }
  return names;
}

// Where it stands, an option of another command is none, nor is what one is called elsewhere.
std::vector<std::string> CommandsWith(const CommandSummary& program, const CommandSummary& command,
                                      const std::string& option) {
  std::vector<std::string> commands;
  for (const CommandSummary& other : program.commands) {
    for (const std::string& known : OptionNames(other)) {
      if (known == option && &other != &command) commands.push_back(other.path + " " + known);
    }
  }
  if (!commands.empty() || !option.starts_with("--")) return commands;
  for (const CommandSummary& other : program.commands) {
    for (const std::string& guess : GuessedOptions(program, other, option)) {
      commands.push_back(other.path + " " + guess);
    }
  }
  return commands;
}

std::vector<std::string> NearOptions(const CommandSummary& program, const CommandSummary& command,
                                     const std::string& option) {
  std::vector<std::string> names = OptionNames(command);
  if (&program != &command) {
    for (std::string& other : OptionNames(program)) names.push_back(std::move(other));
  }
  std::vector<std::string> near;
  if (!option.starts_with("--")) return near;  // one letter is near to everything
  for (const std::size_t number : Nearest(option, names)) near.push_back(names[number]);
  return near;
}

std::string NoSuchOption(const CommandSummary& program, const CommandSummary& command,
                         const std::string& word) {
  const std::string name = word.substr(0, word.find('='));
  std::vector<std::string> meant = GuessedOptions(program, command, name);
  if (meant.empty()) meant = NearOptions(program, command, name);
  if (meant.empty()) meant = CommandsWith(program, command, name);
  return command.path + " has no option " + name + Suggestion(meant);
}

std::vector<std::string> NearCommands(const CommandSummary& program, const std::string& word,
                                      const std::string& invocation) {
  std::vector<std::string> names;
  for (const CommandSummary& command : program.commands) names.push_back(command.name);
  std::vector<std::string> near;
  for (const std::size_t number : Nearest(word, names)) near.push_back(invocation + names[number]);
  return near;
}

std::size_t PlaceCount(const CommandSummary& command) {
  std::size_t count = 0;
  for (const OptionSummary& option : command.options) count += option.StandsByPlace() ? 1u : 0u;
  return count;
}

std::string NoSuchCommand(const CommandSummary& program, const std::string& word,
                          const std::string& invocation) {
  std::vector<std::string> meant;
  if (IsFileOrFolder(word)) meant.push_back("tavrel -l " + Quoted(word));
  for (const std::string& guess : GuessedCommands(program, word))
    meant.push_back(invocation + guess);
  if (meant.empty()) meant = NearCommands(program, word, invocation);
  if (meant.empty() && !word.empty()) meant.push_back(invocation + "search " + Quoted(word));
  return "there is no command \"" + word + "\"" + Suggestion(meant);
}

}  // namespace

std::string NoHelpOn(const CommandSummary& command, const std::string& word) {
  const std::size_t name = std::min(command.path.find(' '), command.path.size());
  const std::string help = "tavrel help" + command.path.substr(name) + " ";
  std::vector<std::string> meant;
  for (const std::string& guess : GuessedCommands(command, word)) {
    if (!guess.starts_with('-')) meant.push_back(help + guess.substr(0, guess.find(' ')));
  }
  if (meant.empty()) meant = NearCommands(command, word, help);
  return command.path + " has no command \"" + word + "\"" + Suggestion(meant);
}

std::string ExplainExtras(const CommandSummary& program, const CommandSummary& command,
                          const std::vector<std::string>& extras,
                          const std::vector<std::string>& words, const std::string& invocation) {
  for (const std::string& extra : extras) {
    if (extra.size() > 1 && extra.starts_with('-')) return NoSuchOption(program, command, extra);
  }
  if (&command == &program) return NoSuchCommand(program, extras.front(), invocation);

  const std::string what = command.path + " does not take \"" + extras.front() + "\"";
  const std::size_t places = PlaceCount(command);
  if (places == 0 && extras.size() == 1) {
    std::vector<std::string> meant;
    for (const std::string& guess : GuessedPlaces(program, command, extras.front())) {
      meant.push_back(invocation + guess);
    }
    return what + Suggestion(meant);
  }
  if (places != 1 || words.empty()) return what;
  std::string whole;
  for (const auto* list : {&words, &extras}) {
    for (const std::string& word : *list) whole += (whole.empty() ? "" : " ") + word;
  }
  const std::string rest = command.path.substr(program.path.size() + 1);
  return what + ": several words that are one name need quotes" +
         Suggestion({invocation + rest + " " + Quoted(whole)});
}

std::string ExplainBehindMark(const CommandSummary& program, const std::vector<std::string>& extras,
                              const std::vector<std::string>& words,
                              const std::string& invocation) {
  const std::string& first = extras.front();
  if (program.Find(first) == nullptr && !first.starts_with('-')) {
    return NoSuchCommand(program, first, invocation);
  }
  std::string meant = program.path;
  for (const auto* list : {&words, &extras}) {
    for (const std::string& word : *list) meant.append(1, ' ').append(Quoted(word));
  }
  return "no word behind \"--\" is a command or an option" + Suggestion({meant});
}

}  // namespace tavrel::host
