#include "bench/generator/Album.h"

#include <algorithm>
#include <array>
#include <span>

#include "bench/generator/Texts.h"

namespace tavrel::bench {
namespace {

constexpr std::uint64_t artistFamily = 1;
constexpr std::string_view mediaFolder = "file://localhost/Users/user/Music/iTunes/iTunes%20Media/";

// Albums per thousand, in the order of Script; the rest is Ascii.
constexpr std::array<std::uint32_t, scriptCount> scriptPerMille{0, 18, 7, 7, 9};

constexpr Format formats[] = {
    {"MPEG audio file", ".mp3", 192, false, false, false},
    {"AAC audio file", ".m4a", 256, false, false, false},
    {"Purchased AAC audio file", ".m4a", 256, true, false, false},
    {"Apple Lossless audio file", ".m4a", 912, false, false, false},
    {"Protected AAC audio file", ".m4p", 128, true, true, false},
};
constexpr Format movieFormat{"Protected MPEG-4 video file", ".m4v", 2000, true, true, true};

Script ScriptOfAlbum(std::uint32_t number) noexcept {
  // 617 has no factor in common with 1000: neighbours fall far apart.
  std::uint32_t slot = static_cast<std::uint32_t>((std::uint64_t{number} * 617 + 500) % 1000);
  for (std::size_t i = 1; i < scriptCount; ++i) {
    if (slot < scriptPerMille[i]) return static_cast<Script>(i);
    slot -= scriptPerMille[i];
  }
  return Script::Ascii;
}

std::uint32_t PickTrackCount(const Format& format, Random& random) noexcept {
  if (format.movie) return 1;
  if (random.Chance(250)) return random.Between(1, 3);
  return random.Between(8, 18);
}

}  // namespace

ArtistPool::ArtistPool(std::uint32_t trackCount, std::uint64_t librarySeed) noexcept
    : artistCount(trackCount / 25 + 1), seed(SeedOf(librarySeed, artistFamily, 0)) {}

std::string ArtistPool::Pick(Script script, Random& random) const {
  const auto which = static_cast<std::size_t>(script);
  const std::uint32_t count = script == Script::Ascii
                                  ? artistCount
                                  : std::max(artistCount * scriptPerMille[which] / 1000, 1U);
  Random own(SeedOf(seed, which, random.LowBelow(count)));
  return MakeArtist(script, own);
}

Album MakeAlbum(std::uint32_t number, const ArtistPool& artists, Random& random) {
  Album album{};
  album.script = ScriptOfAlbum(number);
  album.format = random.Chance(20) ? &movieFormat : &formats[random.LowBelow(std::size(formats))];
  album.compilation = !album.format->movie && random.Chance(40);
  if (!album.compilation) album.artist = artists.Pick(album.script, random);
  album.title = MakeTitle(album.script, 1, 3, random);
  if (random.Chance(450)) album.composer = MakeComposer(album.script, random);
  const std::span<const std::string_view> genres = Genres();
  album.genre = genres[random.LowBelow(static_cast<std::uint32_t>(genres.size()))];
  album.trackCount = PickTrackCount(*album.format, random);
  album.year = random.Between(1958, 2013);
  album.added = random.Between(1104537600, 1325376000);  // 2005 to 2011
  album.hasDiscNumber = random.Chance(450);
  album.hasTrackCount = random.Chance(620);
  album.hasArtwork = random.Chance(670);
  album.folder = mediaFolder;
  album.folder += album.format->movie ? "Movies/" : "Music/";
  album.folder += album.compilation ? "Compilations" : EncodePath(FileName(album.artist));
  album.folder += '/';
  album.folder += EncodePath(FileName(album.title));
  album.folder += '/';
  return album;
}

}  // namespace tavrel::bench
