#include "library/artwork/SongArtwork.h"

#include <algorithm>

#include "library/artwork/ArtworkCatalogue.h"
#include "library/artwork/ArtworkIndex.h"
#include "library/playlists/PlaylistQueries.h"
#include "library/tracks/TrackProperties.h"

namespace tavrel {
namespace {

ArtworkIds IdsOf(const GlobalState& state, const TrackRecord& track) noexcept {
  ArtworkIds ids;
  std::copy_n(track.persistentId, 8, std::copy_n(state.libraryPersistentId, 8, ids.begin()));
  return ids;
}

}  // namespace

ArtworkHandle* OpenSongArtwork(LibraryState& state, LibraryState* loaded,
                               const PlaylistRecord* playlist, std::int32_t index,
                               ArtworkLayouts layouts) noexcept {
  // Before any argument is looked at, and again for as long as nothing is found. Kept.
  if (state.artworkFileCount == 0) CreateArtworkCatalogue(state);
  TrackRecord* track = SongAt(playlist, index);
  if (track == nullptr) return nullptr;
  if (track->pendingDict != nullptr) LoadTrackProperties(*track, loaded);  // the ID among them
  const char* path = FindArtworkFile(state, IdsOf(state, *track));
  return path == nullptr ? nullptr : OpenArtworkHandle(path, layouts);
}

}  // namespace tavrel
