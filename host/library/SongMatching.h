// Which songs a search finds.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/library/SongRecord.h"
#include "host/library/SongSearch.h"

namespace tavrel::host {

// What is looked for. All of it must hold.
struct SongQuery {
  std::vector<std::string> words;  // each in any of kWordFields
  std::optional<std::string> name;
  std::optional<std::string> artist;
  std::optional<std::string> album;
  std::optional<std::string> composer;
  std::optional<std::string> genre;
  std::optional<std::string> years;  // "1999", or "1990-1999"
  bool exact = false;  // accents count, and words are looked for in name, artist and album
};

// Where a word is looked for.
inline constexpr std::array kWordFields{Field::Name, Field::Artist, Field::AlbumArtist,
                                        Field::Album, Field::Composer};

// The texts of a query that one field alone must have.
struct FieldTerm {
  Field field;
  const std::string* text;  // borrowed of the query
};
[[nodiscard]] std::vector<FieldTerm> FieldTermsOf(const SongQuery& query);

// Whether the years of a query are written as they must be.
[[nodiscard]] bool AreYears(std::string_view text);

// The first `limit` songs of the library that match, in the file's order; 0 for all. With `exact` the
// library's own search finds them, as far as it knows the fields; else case and accents do not count.
// Cost: a walk over every song, or what the library's search costs.
[[nodiscard]] std::vector<std::int32_t> MatchSongs(const LibraryFunctions& library,
                                                   const SongQuery& query, std::size_t limit);

}  // namespace tavrel::host
