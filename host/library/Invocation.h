// Commands as the user would type them.
#pragma once

#include <string>
#include <string_view>

#include "host/library/Options.h"

namespace tavrel::host {

// As one word of a shell: as it is where that is plain, else between single quotes.
[[nodiscard]] std::string Quoted(std::string_view word);

// "tavrel", the options that say which library and where its files are, as they were given, and `rest`,
// which is not empty.
[[nodiscard]] std::string Invocation(const Options& options, std::string_view rest);

}  // namespace tavrel::host
