// The definition of the commands, as help, manual page and completions show it. CommandParser makes it from
// what parses the command line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavrel::host {

// What may stand where an option has its argument.
struct OptionValues {
  std::vector<std::string> choices;  // words to choose from
  bool isParted = false;             // several of them, parted by commas
  bool files = false;                // names of files and folders
  bool lists = false;                // names of playlists
  bool commands = false;             // names of the program's commands
};

struct OptionSummary {
  std::vector<std::string> names;  // "-l", "--library"; none: it stands by its place
  std::string argument;            // "PATH", "auto|always|never"; empty: it takes none
  std::string text;
  std::vector<std::string> choices;  // what the argument may be, where that is known
  bool isRequired = false;
  bool isRepeated = false;  // of those that stand by their place: there may be several

  [[nodiscard]] bool StandsByPlace() const noexcept { return names.empty(); }
  // "-l, --library PATH", "LIST"
  [[nodiscard]] std::string Title() const;
  // The choices, and what the argument tells of its values: FILE, PATH, DIR and FOLDER name files, LIST and
  // PLAYLIST playlists, NAMES both, words in lower case stand for themselves, and a comma parts several.
  [[nodiscard]] OptionValues Values() const;
};

struct CommandSummary {
  std::string name;                  // "songs"; of the program itself "tavrel"
  std::string path;                  // "tavrel songs"
  std::vector<std::string> aliases;  // other names of it
  std::string text;
  std::vector<OptionSummary> options;  // in the order of their definition
  std::vector<CommandSummary> commands;

  // "tavrel songs [OPTIONS] [LIST]"
  [[nodiscard]] std::string Usage() const;
  // The command of that name or alias; null when there is none. Borrowed from this one.
  [[nodiscard]] const CommandSummary* Find(std::string_view command) const;
};

}  // namespace tavrel::host
