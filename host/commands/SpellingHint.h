// What to say when nothing is found.
#pragma once

#include <string>

#include "host/library/Library.h"
#include "host/library/SongSearch.h"

namespace tavrel::host {

// The end of the message: spellings that would be found, where accents are all that stands between them and
// the terms; else empty.
[[nodiscard]] std::string SpellingHint(const LibraryFunctions& library, const SearchTerms& terms);

}  // namespace tavrel::host
