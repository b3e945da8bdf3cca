// The manual page.
#pragma once

#include <string>
#include <string_view>

#include "host/arguments/CommandSummary.h"

namespace tavrel::host {

// Page tavrel(1), as `man` reads it; UTF-8.
[[nodiscard]] std::string ManualPage(const CommandSummary& program, std::string_view version);

}  // namespace tavrel::host
