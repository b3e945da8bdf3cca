#include <gmock/gmock.h>

#include <array>
#include <string>

#include "host/library/AlbumGrouping.h"

namespace tavrel::host {
namespace {

using testing::ElementsAre;
using testing::Optional;

Song MakeSong(std::string_view album, std::string_view artist, std::string_view location = {}) {
  Song song;
  song.album = album;
  song.artist = artist;
  if (!location.empty()) song.location = location;
  return song;
}

TEST(AlbumGrouping, APartIsATitleByAnArtistHoweverTheAccentsAreComposed) {
  AlbumGrouping grouping;
  EXPECT_THAT(grouping.Add(MakeSong("Opera", "Dvo\u0159\u00E1k")), Optional(0u));
  EXPECT_THAT(grouping.Add(MakeSong("Opera", "Smetana")), Optional(1u));
  EXPECT_THAT(grouping.Add(MakeSong("Opera", "Dvor\u030Ca\u0301k")), Optional(0u));
  EXPECT_EQ(grouping.Add(MakeSong("", "Smetana")), std::nullopt);
  EXPECT_EQ(grouping.ArtistOf(0), "Dvo\u0159\u00E1k");
  EXPECT_THAT(grouping.Find(MakeSong("Opera", "Dvor\u030Ca\u0301k")), Optional(0u));
  EXPECT_EQ(grouping.Find(MakeSong("Opera", "Janacek")), std::nullopt);
  EXPECT_EQ(grouping.Find(MakeSong("", "")), std::nullopt);
  EXPECT_THAT(grouping.Albums(), ElementsAre(0u, 1u)) << "no folder joins them";
}

TEST(AlbumGrouping, FoldersJoinPartsOfOneTitle) {
  AlbumGrouping grouping;
  for (const auto& [album, artist, location] : {std::array{"Hits", "A", "/1/a"},
                                                {"Hits", "B", "/2/b"},
                                                {"Hits", "C", "/3/c"},
                                                {"Other", "C", "/2/d"},
                                                {"Hits", "B", "/3/e"}}) {
    EXPECT_TRUE(grouping.Add(MakeSong(album, artist, location)).has_value());
  }
  EXPECT_THAT(grouping.Albums(), ElementsAre(0u, 1u, 1u, 3u));
}

TEST(AlbumGrouping, TheNextFolderOfAnArtistJoinsPartsToo) {
  AlbumGrouping grouping;
  for (const auto& [artist, location] :
       {std::array{"A", "/1/a"}, {"A", "/2/b"}, {"A", "/2/c"}, {"B", "/2/d"}}) {
    EXPECT_TRUE(grouping.Add(MakeSong("Hits", artist, location)).has_value());
  }
  EXPECT_THAT(grouping.Albums(), ElementsAre(0u, 0u));
}

TEST(AlbumGrouping, ALongChainOfFoldersIsOneAlbum) {
  constexpr std::size_t kParts = 20000;
  AlbumGrouping grouping;
  const auto add = [&grouping](std::size_t artist, std::size_t folder) {
    const std::string name = std::to_string(artist);
    const std::string path = "/" + std::to_string(folder) + "/x";
    EXPECT_TRUE(grouping.Add(MakeSong("Hits", name, path)).has_value());
  };
  for (std::size_t part = 0; part < kParts; ++part) add(part, part);
  // From the end to the start, which makes the longest way from a part to the first one.
  for (std::size_t part = kParts - 1; part > 0; --part) add(part - 1, part);
  EXPECT_THAT(grouping.Albums(), testing::Each(0u));
}

}  // namespace
}  // namespace tavrel::host
