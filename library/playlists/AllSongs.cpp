// Every track of the library file as one playlist: an addition for hosts, since the file's own list
// of everything is a hidden playlist.
#include "library/State.h"
#include "library/playlists/PlaylistTable.h"

PlaylistRecord* OpenAllSongs() noexcept {
  if (g_pGlobal == nullptr || g_pGlobal->document == nullptr) return nullptr;
  tavrel::PrivateState& state = tavrel::Private();
  if (state.allSongs == nullptr) {
    void* place = state.trackRecords.Take(sizeof(PlaylistRecord));
    state.allSongs = static_cast<PlaylistRecord*>(place);
    if (place == nullptr) return nullptr;
  }
  // The track table's own array: nothing is copied.
  state.allSongs->tracks = g_pGlobal->tracks;
  state.allSongs->capacity = g_pGlobal->trackCapacity;
  state.allSongs->count = g_pGlobal->trackCount;
  return state.allSongs;
}
