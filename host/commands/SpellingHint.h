// What to say when nothing is found.
#pragma once

#include <string>

#include "host/library/Library.h"
#include "host/library/SongSearch.h"

namespace tavrel::host {

// The message; it names spellings that would be found, if accents are all that stands between them
// and the terms.
[[nodiscard]] std::string NothingFound(const LibraryFunctions& library, const SearchTerms& terms);

}  // namespace tavrel::host
