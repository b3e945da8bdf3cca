// What to say to somebody whose command line is not understood.
#pragma once

#include <string>
#include <vector>

#include "host/arguments/CommandSummary.h"

namespace tavrel::host {

// program: the whole definition.
// command: the one that was recognised, or `program`.
// extras:  the words that fit nowhere, in their order; not empty.
// words:   those that stand by their place and were taken, in their order.
// invocation: "tavrel" and the options that say which library, as given.
// Result: what is wrong, and what may have been meant.
[[nodiscard]] std::string ExplainExtras(const CommandSummary& program,
                                        const CommandSummary& command,
                                        const std::vector<std::string>& extras,
                                        const std::vector<std::string>& words,
                                        const std::string& invocation);

// The same where no command stands in front of "--". extras: the words behind it; not empty. words: those in front.
[[nodiscard]] std::string ExplainBehindMark(const CommandSummary& program,
                                            const std::vector<std::string>& extras,
                                            const std::vector<std::string>& words,
                                            const std::string& invocation);

// The message when help is asked for one that is not there. command: the program, or a command that was asked
// for something below it.
[[nodiscard]] std::string NoHelpOn(const CommandSummary& command, const std::string& word);

}  // namespace tavrel::host
