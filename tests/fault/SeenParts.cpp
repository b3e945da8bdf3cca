#include "tests/fault/SeenParts.h"

namespace tavrel::test {

// 1 without a text: a boolean in place of one.
bool IsPart(const SeenText& part, const SeenText& whole) {
  return part == whole || part == SeenText() || (!part.text && part.size <= 1);
}

bool IsPart(std::int32_t part, std::int32_t whole) {
  return part == whole || part == 0;
}

bool IsPart(const SeenSong& part, const SeenSong& whole) {
  return IsPart(part.name, whole.name) && IsPart(part.location, whole.location) &&
         IsPart(part.artist, whole.artist) && IsPart(part.album, whole.album) &&
         IsPart(part.genre, whole.genre) && IsPart(part.totalTime, whole.totalTime) &&
         IsPart(part.playCount, whole.playCount) && IsPart(part.trackNumber, whole.trackNumber) &&
         IsPart(part.movie, whole.movie);
}

}  // namespace tavrel::test
