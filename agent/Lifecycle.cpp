#include "agent/Lifecycle.h"

#include <cstring>

#include "library/artwork/ArtworkCatalogue.h"
#include "library/file/LibraryFile.h"
#include "library/playlists/PlaylistTable.h"
#include "library/ringtones/RingtoneCatalogue.h"
#include "library/search/SearchIndex.h"
#include "library/tracks/TrackTable.h"
#include "system/Guard.h"
#include "system/HomeFolder.h"
#include "system/Memory.h"
#include "xml/TBXML.h"

constinit GlobalState* g_pGlobal = nullptr;

namespace tavrel {

constinit LibraryState* loadedState = nullptr;

namespace {

// What loads have made and no unload has released, the latest first; the loaded one is that, if any.
constinit LibraryState* madeStates = nullptr;

char* OwnedHomeFolder() noexcept {
  return system::Guarded<char*>(nullptr, [] {
    const auto home = system::HomeFolder();
    char* copy = home ? static_cast<char*>(system::Allocate(home->size() + 1)) : nullptr;
    if (copy != nullptr) std::memcpy(copy, home->c_str(), home->size() + 1);
    return copy;
  });
}

}  // namespace

LibraryState* CurrentLibrary() noexcept {
  LibraryState* state = madeStates;
  while (state != nullptr && state != g_pGlobal) state = state->former;
  return state;
}

LibraryState* MakeLibrary() noexcept {
  auto* state = static_cast<LibraryState*>(system::AllocateZeroed(sizeof(LibraryState)));
  loadedState = state;
  g_pGlobal = state;
  if (state == nullptr) return nullptr;
  state->former = madeStates;
  madeStates = state;
  state->pool = &state->ownPool;
  return state;
}

std::int32_t Load() noexcept {
  LibraryState* state = MakeLibrary();
  if (state == nullptr) return -1;
  state->home = OwnedHomeFolder();
  state->document = OpenLibraryFile(state->home);
  if (state->document == nullptr) return -1;
  // In this order: playlists look their tracks up in the finished track table, and the ringtone
  // playlist is the last of its group.
  CreateTracks(*state);
  CreatePlaylists(*state);
  CreateRingtones(*state);
  return 0;
}

std::int32_t Unload() noexcept {
  if (loadedState == nullptr) return 0;
  LibraryState& state = *loadedState;
  loadedState = nullptr;
  madeStates = state.former;
  ReleaseSearchIndex(state);
  DestroyArtworkCatalogue(state);
  DestroyRingtones(state);
  DestroyTracks(state);
  DestroyPlaylists(state);
  delete state.document;
  state.ownPool.Drain();
  system::Release(state.home);
  system::Release(&state);
  return 0;
}

}  // namespace tavrel
