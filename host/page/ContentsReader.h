// Reads what the page tells of a library.
#pragma once

#include "host/library/Library.h"
#include "host/page/Contents.h"

namespace tavrel::host {

// Reads each song once. withPaths: also where its file lies. Looks for every file.
[[nodiscard]] PageContents ReadContents(const LibraryFunctions& library, bool withPaths);

}  // namespace tavrel::host
