// Help on screen.
#pragma once

#include <cstddef>
#include <string>

#include "host/arguments/CommandSummary.h"

namespace tavrel::host {

// What `command` does, with examples first. program: the whole definition, whose options work everywhere.
// No line is wider than `width` columns but for words that are; 0: 80.
[[nodiscard]] std::string HelpText(const CommandSummary& program, const CommandSummary& command,
                                   std::size_t width);

}  // namespace tavrel::host
