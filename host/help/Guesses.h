// What people try first, and what it is called here.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/arguments/CommandSummary.h"

namespace tavrel::host {

// What a word is that was taken for a command: commands with their options, "stats --by album"; empty when it
// is none that anybody guesses. Only commands of the program.
[[nodiscard]] std::vector<std::string> GuessedCommands(const CommandSummary& program,
                                                       std::string_view word);

// What an option is called that was guessed: "--format csv" for "--csv". Only options that the command or the
// program has.
[[nodiscard]] std::vector<std::string> GuessedOptions(const CommandSummary& program,
                                                      const CommandSummary& command,
                                                      std::string_view option);

// What a word may be that the command does not take: a value of one of its options, or of another command.
// Quoted for a shell.
[[nodiscard]] std::vector<std::string> GuessedPlaces(const CommandSummary& program,
                                                     const CommandSummary& command,
                                                     const std::string& word);

}  // namespace tavrel::host
