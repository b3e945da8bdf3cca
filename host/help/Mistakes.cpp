#include "host/help/Mistakes.h"

#include <sys/stat.h>

#include <array>
#include <string_view>

#include "host/library/Invocation.h"
#include "host/output/Nearest.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

// What people try first, and what it is called here.
struct Guess {
  std::string_view word;
  std::string_view command;
};

constexpr std::array kGuesses{
    Guess{"find", "search"},
    Guess{"grep", "search"},
    Guess{"list", "songs"},
    Guess{"ls", "songs"},
    Guess{"tracks", "songs"},
    Guess{"show", "songs"},
    Guess{"export", "songs"},
    Guess{"dump", "songs"},
    Guess{"lists", "playlists"},
    Guess{"folders", "playlists"},
    Guess{"cover", "covers"},
    Guess{"art", "covers"},
    Guess{"images", "covers"},
    Guess{"pictures", "covers"},
    Guess{"albums", "stats --by album"},
    Guess{"artists", "stats --by artist"},
    Guess{"genres", "stats --by genre"},
    Guess{"years", "stats --by year"},
    Guess{"top", "stats"},
    Guess{"count", "stats"},
    Guess{"statistics", "stats"},
    Guess{"tones", "ringtones"},
    Guess{"man", "help"},
};

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

std::string NoSuchOption(const CommandSummary& program, const CommandSummary& command,
                         const std::string& word) {
  const std::string name = word.substr(0, word.find('='));
  std::vector<std::string> names = OptionNames(command);
  if (&program != &command) {
    for (std::string& other : OptionNames(program)) names.push_back(std::move(other));
  }
  std::vector<std::string> near;
  for (const std::size_t number : Nearest(name, names)) near.push_back(names[number]);
  // Where it stands, an option of another command is none.
  for (const CommandSummary& other : program.commands) {
    for (const std::string& known : OptionNames(other)) {
      if (known == name && &other != &command) near.push_back(other.path + " " + known);
    }
  }
  return command.path + " has no option " + name + Suggestion(near);
}

std::size_t PlaceCount(const CommandSummary& command) {
  std::size_t count = 0;
  for (const OptionSummary& option : command.options) count += option.StandsByPlace() ? 1u : 0u;
  return count;
}

}  // namespace

std::string NoSuchCommand(const CommandSummary& program, const std::string& word,
                          const std::string& invocation) {
  std::vector<std::string> meant;
  if (IsFileOrFolder(word)) meant.push_back("tavrel -l " + Quoted(word));
  for (const Guess& guess : kGuesses) {
    const std::string_view command = guess.command.substr(0, guess.command.find(' '));
    if (guess.word == word && program.Find(command) != nullptr) {
      meant.push_back(invocation + std::string(guess.command));
    }
  }
  if (meant.empty()) {
    std::vector<std::string> names;
    for (const CommandSummary& command : program.commands) names.push_back(command.name);
    for (const std::size_t number : Nearest(word, names))
      meant.push_back(invocation + names[number]);
  }
  if (meant.empty() && program.Find("search") != nullptr) {
    meant.push_back(invocation + "search " + Quoted(word));
  }
  return "there is no command \"" + word + "\"" + Suggestion(meant);
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
  if (places != 1 || words.empty()) return what;
  std::string whole;
  for (const auto* list : {&words, &extras}) {
    for (const std::string& word : *list) whole += (whole.empty() ? "" : " ") + word;
  }
  const std::string rest = command.path.substr(program.path.size() + 1);
  return what + ": several words that are one name need quotes" +
         Suggestion({invocation + rest + " " + Quoted(whole)});
}

}  // namespace tavrel::host
