// One album of a generated library: what its tracks have in common.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "bench/generator/WordTables.h"
#include "bench/support/Random.h"

namespace tavrel::bench {

struct Format {
  std::string_view kind;
  std::string_view extension;
  std::uint32_t bitRate;
  bool purchased;
  bool isProtected;
  bool movie;
};

// The artists of a generated library. An artist's name depends on the seed, the script and the
// number only, so that none has to be remembered.
class ArtistPool {
 public:
  ArtistPool(std::uint32_t trackCount, std::uint64_t librarySeed) noexcept;

  // Some artists come more often than others.
  std::string Pick(Script script, Random& random) const;

 private:
  std::uint32_t artistCount;
  std::uint64_t seed;
};

struct Album {
  Script script;
  const Format* format;
  std::string artist;  // empty for a compilation, whose tracks have an artist each
  std::string title;
  std::string composer;  // may be empty
  std::string_view genre;
  std::string folder;  // the encoded start of its tracks' locations
  std::uint32_t trackCount;
  std::uint32_t year;
  std::uint64_t added;  // seconds since 1970
  bool compilation;
  bool hasDiscNumber;
  bool hasTrackCount;
  bool hasArtwork;
};

// The album with this number. Scripts are dealt out by number, so that their shares hold in small
// libraries too.
Album MakeAlbum(std::uint32_t number, const ArtistPool& artists, Random& random);

}  // namespace tavrel::bench
