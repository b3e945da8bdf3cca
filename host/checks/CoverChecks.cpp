#include "host/checks/CoverChecks.h"

#include <utility>

#include "host/artwork/CacheFolder.h"
#include "host/artwork/Covers.h"

namespace tavrel::host {

CoverChecks CheckCovers(const Session& session, const std::function<void()>& step) {
  CoverChecks checks;
  const CacheFolder cache(session.library, session.libraryPath);
  checks.hasCache = !cache.IsEmpty();
  if (!checks.hasCache) return checks;
  Covers covers(session.library, cache);
  for (Album& album : ReadAlbums(session.library)) {
    bool hasCover = false;
    for (const std::int32_t song : album.songs) {
      step();
      if (covers.Of(song)) hasCover = true;
    }
    if (!hasCover) checks.without.push_back(std::move(album));
  }
  checks.damaged = covers.Damaged();
  return checks;
}

}  // namespace tavrel::host
