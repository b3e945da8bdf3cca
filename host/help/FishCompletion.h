// Completions for fish.
#pragma once

#include <string>

#include "host/arguments/CommandSummary.h"

namespace tavrel::host {

// The script: a `complete` for each command, option and value, and what they ask the words before them.
[[nodiscard]] std::string FishCompletion(const CommandSummary& program);

}  // namespace tavrel::host
