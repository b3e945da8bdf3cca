// What help and manual page say beyond the definition of the commands.
#pragma once

#include <string_view>
#include <vector>

namespace tavrel::host {

struct Example {
  std::string_view command;  // the name of the command that it shows; empty: the program's
  std::string_view line;
  std::string_view text;
};

// Those of a command, in the order in which they are worth to be known; of the program itself with an empty
// name: some of each command.
[[nodiscard]] std::vector<Example> ExamplesOf(std::string_view command);

// A heading, and paragraphs below it.
struct Chapter {
  std::string_view title;
  std::vector<std::string_view> paragraphs;
};

// Where the library is looked for, what the environment changes, how the program ends.
[[nodiscard]] std::vector<Chapter> Chapters();

}  // namespace tavrel::host
