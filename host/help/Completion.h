// Completions of the command line for shells.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "host/arguments/CommandSummary.h"

namespace tavrel::host {

inline constexpr std::array<std::string_view, 3> kShells{"bash", "zsh", "fish"};

// A script for one of kShells: commands, options, the values that options choose from, and files.
[[nodiscard]] std::string Completion(const CommandSummary& program, std::string_view shell);

}  // namespace tavrel::host
