// What searches share, made by the first one. The document never changes after load.
#pragma once

#include "library/State.h"
#include "library/search/FirstPositions.h"
#include "library/search/SearchColumns.h"

namespace tavrel {

struct SearchIndex {
  SearchColumns columns;
  FirstPositions positions;
};

// That of a state with a document. None when there is no memory for it; the next search tries again.
[[nodiscard]] SearchIndex* PreparedIndex(LibraryState& state) noexcept;

// Gives back what searches have made.
void ReleaseSearchIndex(LibraryState& state) noexcept;

}  // namespace tavrel
