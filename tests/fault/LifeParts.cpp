// What of a life failures may take away.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/fault/LibraryLife.h"
#include "tests/fault/SeenParts.h"

namespace tavrel::test {
namespace {

using test::IsPart;  // beside those below

// Whether `part` is `whole` with some left out.
template <class List>
bool IsSelection(const List& part, const List& whole) {
  auto at = whole.begin();
  for (const auto& item : part) {
    at = std::find(at, whole.end(), item);
    if (at == whole.end()) return false;
    ++at;
  }
  return true;
}

template <class List>
bool IsStart(const List& part, const List& whole) {
  return part.size() <= whole.size() && std::equal(part.begin(), part.end(), whole.begin());
}

// Items whose tracks are not in the table are left out of a playlist.
bool IsPart(const LivedPlaylist& part, const LivedPlaylist& whole, bool hasEveryTrack) {
  return part.kind == whole.kind && IsPart(part.name, whole.name) &&
         (hasEveryTrack ? IsStart(part.trackIds, whole.trackIds)
                        : IsSelection(part.trackIds, whole.trackIds));
}

bool IsPart(const LivedImage& part, const LivedImage& whole) {
  const bool isSame =
      part.format == whole.format && part.width == whole.width && part.height == whole.height;
  return isSame &&
         (part.bytes == whole.bytes || part.bytes == std::string(whole.bytes.size(), '\0'));
}

bool IsPart(const LivedArtwork& part, const LivedArtwork& whole) {
  if (!part.isFound) return true;
  return whole.isFound && part.images.size() <= whole.images.size() &&
         std::equal(part.images.begin(), part.images.end(), whole.images.begin(),
                    [](const LivedImage& a, const LivedImage& b) { return IsPart(a, b); });
}

// When the file was not understood to its end, its last playlist may be there without its kind.
bool IsCutOff(const LivedPlaylist& playlist) {
  return playlist.kind == 0;
}

void ExpectPartOfGroup(const std::vector<LivedPlaylist>& part,
                       const std::vector<LivedPlaylist>& whole, bool hasEveryTrack) {
  for (std::size_t i = 0; i < part.size(); ++i) {
    const bool isLast = i + 1 == part.size();
    const bool isPart = i < whole.size() && IsPart(part[i], whole[i], hasEveryTrack);
    EXPECT_TRUE(isPart || (isLast && IsCutOff(part[i])))
        << "playlist " << i << ": " << part[i].name.text.value_or("-");
  }
}

void ExpectPartOfSearch(const LivedSearch& part, const LivedSearch& whole) {
  EXPECT_LE(part.count, whole.count);
  for (std::size_t i = 0; i < part.isPlaced.size(); ++i) {
    EXPECT_TRUE(!part.isPlaced[i] || whole.isPlaced[i]) << "found by failure: track " << i;
  }
}

}  // namespace

void ExpectPartOf(const Life& life, const Life& whole) {
  ASSERT_LE(life.songs.size(), whole.songs.size());
  for (std::size_t i = 0; i < life.songs.size(); ++i) {
    EXPECT_TRUE(IsPart(life.songs[i], whole.songs[i])) << "song " << i;
  }
  const bool hasEveryTrack = life.songs.size() == whole.songs.size();
  for (std::size_t g = 0; g < life.groups.size(); ++g) {
    ExpectPartOfGroup(life.groups[g], whole.groups[g], hasEveryTrack);
  }
  for (std::size_t i = 0; i < life.searches.size(); ++i) {
    ExpectPartOfSearch(life.searches[i], whole.searches[i]);
  }
  ASSERT_LE(life.artwork.size(), whole.artwork.size());
  for (std::size_t i = 0; i < life.artwork.size(); ++i) {
    EXPECT_TRUE(IsPart(life.artwork[i], whole.artwork[i])) << "artwork " << i;
  }
  EXPECT_TRUE(IsSelection(life.ringtones, whole.ringtones));
}

}  // namespace tavrel::test
