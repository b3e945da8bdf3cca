#include "library/search/SearchIndex.h"

#include "system/Memory.h"

namespace tavrel {

SearchIndex* PreparedIndex(LibraryState& state) noexcept {
  if (state.searchIndex != nullptr) return state.searchIndex;
  auto* index = static_cast<SearchIndex*>(system::AllocateZeroed(sizeof(SearchIndex)));
  if (index == nullptr) return nullptr;
  const auto mostTracks = static_cast<std::uint32_t>(state.trackCount);
  if (!ReadSearchColumns(*state.document, mostTracks, index->columns)) {
    system::Release(index);
    return nullptr;
  }
  state.searchIndex = index;
  return index;
}

void ReleaseSearchIndex(LibraryState& state) noexcept {
  SearchIndex*& index = state.searchIndex;
  if (index == nullptr) return;
  system::ReleaseBlock(index->columns.block);
  index->positions.Release();
  system::Release(index);
  index = nullptr;
}

}  // namespace tavrel
