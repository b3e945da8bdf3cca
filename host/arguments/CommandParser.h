// Reads the words of a command line by the definition of the commands.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/arguments/CommandDefinition.h"
#include "host/arguments/CommandSummary.h"

namespace tavrel::host {

// What the words of a command line come to.
struct ParsedWords {
  enum class Kind {
    Understood,
    HelpAsked,
    VersionAsked,
    TooMany,     // some fit nowhere
    BehindMark,  // no command stands before "--", and words stand behind it
    Wrong,
  };
  Kind kind = Kind::Understood;
  std::vector<std::string> command;  // the names that lead to the command which was reached
  std::vector<std::string> words;    // those it was given by their place; those in front of "--"
  std::vector<std::string> extras;   // those that fit nowhere, or stand behind "--"
  std::string message;               // what is wrong
  std::optional<Task> task;          // of the command; none when no command was given
};

class CommandParser {
 public:
  // name: of the program. text: what it does.
  CommandParser(const std::string& name, const std::string& text);
  CommandParser(const CommandParser&) = delete;
  CommandParser& operator=(const CommandParser&) = delete;
  ~CommandParser();

  // What may be said to the program, in front of and behind every command; -h and --version are there.
  [[nodiscard]] CommandDefinition Program();
  [[nodiscard]] CommandSummary Summary() const;
  [[nodiscard]] ParsedWords Parse(int count, const char* const* arguments);

 private:
  std::unique_ptr<CLI::App> parser_;
  std::unique_ptr<Definitions> all_;
};

}  // namespace tavrel::host
