// The definition of the commands, as help, manual page and completions show it. CommandParser makes it from
// what parses the command line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavrel::host {

struct OptionSummary {
  std::vector<std::string> names;  // "-l", "--library"; none: it stands by its place
  std::string argument;            // "PATH", "auto|always|never"; empty: it takes none
  std::string text;
  bool isRequired = false;
  bool isRepeated = false;  // of those that stand by their place: there may be several

  [[nodiscard]] bool StandsByPlace() const noexcept { return names.empty(); }
  // "-l, --library PATH", "LIST"
  [[nodiscard]] std::string Title() const;
  // The values that the argument may have; empty when it may be any.
  [[nodiscard]] std::vector<std::string> Choices() const;
  // Whether it is the name of a file or folder.
  [[nodiscard]] bool IsFile() const noexcept {
    return argument == "FILE" || argument == "PATH" || argument == "DIR";
  }
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
