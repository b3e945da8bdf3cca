#include "library/search/SongFinding.h"

#include "library/search/PlainSearch.h"
#include "library/search/SearchIndex.h"
#include "library/search/TrackMatcher.h"
#include "library/tracks/TrackTable.h"

namespace tavrel {
namespace {

// From event to event; what lies between is passed over unseen.
std::int32_t FindFrom(TrackMatcher& matcher, FindSongsCallback callback, void* context) noexcept {
  std::int32_t count = 0;
  for (std::uint32_t track = matcher.NextEvent(0); track < matcher.trackCount();
       track = matcher.NextEvent(track)) {
    if (matcher.IsMatch(track)) {
      ++count;
      if (callback(static_cast<std::int32_t>(track), context) == 0) return count;
    }
    matcher.MoveTo(++track);
  }
  return count;
}

}  // namespace

std::int32_t FindMatches(LibraryState& state, const SongInfo& terms, FindSongsCallback callback,
                         void* context) noexcept {
  const TBXMLElement* tracks = TrackDictionary(state.document);
  if (tracks == nullptr) return 0;
  if (const SearchIndex* index = PreparedIndex(state)) {
    TrackMatcher matcher(index->columns);
    if (matcher.Prepare(terms)) return FindFrom(matcher, callback, context);
  }
  return FindPlainly(tracks, state.trackCount, terms, callback, context);
}

}  // namespace tavrel
