// The fields of a song: one table, from which come the columns and their headings, the names in JSON, CSV
// and on the command line, and what docs/fields.md says.
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tavrel::host {

enum class Field : std::uint8_t {
  Id,
  Name,
  Artist,
  AlbumArtist,
  Album,
  Composer,
  Genre,
  Grouping,
  Year,
  Disc,
  Discs,
  Track,
  Tracks,
  Seconds,
  Rating,
  RatingComputed,
  AlbumRating,
  Plays,
  Skips,
  LastPlayed,
  LastSkipped,
  Added,
  Modified,
  Released,
  Comments,
  Bpm,
  BitRate,
  SampleRate,
  Size,
  Type,
  Kind,
  Disabled,
  Compilation,
  Explicit,
  Loved,
  Podcast,
  Movie,
  TvShow,
  Series,
  Season,
  Episode,
  Location,
  Path,
  Status,
};

inline constexpr std::size_t kFieldCount = static_cast<std::size_t>(Field::Status) + 1;

using FieldSet = std::bitset<kFieldCount>;

enum class FieldType : std::uint8_t {
  Text,
  Number,   // whole
  Seconds,  // milliseconds in the file
  Date,     // ISO 8601 UTC
  Flag,     // false where the file says nothing
};

struct FieldFacts {
  std::string_view name;     // in JSON, CSV and on the command line
  std::string_view heading;  // over a table's column
  std::string_view key;      // in the library file; empty for what is made of "Location"
  FieldType type;
  std::size_t weight;  // of a table's column, as Column has it
};

// In the order of the enumeration.
inline constexpr std::array<FieldFacts, kFieldCount> kFields{{
    {"id", "ID", "Persistent ID", FieldType::Text, 0},
    {"name", "Name", "Name", FieldType::Text, 3},
    {"artist", "Artist", "Artist", FieldType::Text, 2},
    {"albumArtist", "Album artist", "Album Artist", FieldType::Text, 2},
    {"album", "Album", "Album", FieldType::Text, 2},
    {"composer", "Composer", "Composer", FieldType::Text, 2},
    {"genre", "Genre", "Genre", FieldType::Text, 2},
    {"grouping", "Grouping", "Grouping", FieldType::Text, 2},
    {"year", "Year", "Year", FieldType::Number, 0},
    {"disc", "Disc", "Disc Number", FieldType::Number, 0},
    {"discs", "Discs", "Disc Count", FieldType::Number, 0},
    {"track", "Track", "Track Number", FieldType::Number, 0},
    {"tracks", "Tracks", "Track Count", FieldType::Number, 0},
    {"seconds", "Time", "Total Time", FieldType::Seconds, 0},
    {"rating", "Rating", "Rating", FieldType::Number, 0},
    {"ratingComputed", "Computed", "Rating Computed", FieldType::Flag, 0},
    {"albumRating", "Album rating", "Album Rating", FieldType::Number, 0},
    {"plays", "Plays", "Play Count", FieldType::Number, 0},
    {"skips", "Skips", "Skip Count", FieldType::Number, 0},
    {"lastPlayed", "Last played", "Play Date UTC", FieldType::Date, 0},
    {"lastSkipped", "Last skipped", "Skip Date", FieldType::Date, 0},
    {"added", "Added", "Date Added", FieldType::Date, 0},
    {"modified", "Modified", "Date Modified", FieldType::Date, 0},
    {"released", "Released", "Release Date", FieldType::Date, 0},
    {"comments", "Comments", "Comments", FieldType::Text, 2},
    {"bpm", "BPM", "BPM", FieldType::Number, 0},
    {"bitRate", "Bit rate", "Bit Rate", FieldType::Number, 0},
    {"sampleRate", "Sample rate", "Sample Rate", FieldType::Number, 0},
    {"size", "Size", "Size", FieldType::Number, 0},
    {"type", "Type", "Track Type", FieldType::Text, 0},
    {"kind", "Kind", "Kind", FieldType::Text, 2},
    {"disabled", "Disabled", "Disabled", FieldType::Flag, 0},
    {"compilation", "Compilation", "Compilation", FieldType::Flag, 0},
    {"explicit", "Explicit", "Explicit", FieldType::Flag, 0},
    {"loved", "Loved", "Loved", FieldType::Flag, 0},
    {"podcast", "Podcast", "Podcast", FieldType::Flag, 0},
    {"movie", "Movie", "Movie", FieldType::Flag, 0},
    {"tvShow", "TV show", "TV Show", FieldType::Flag, 0},
    {"series", "Series", "Series", FieldType::Text, 2},
    {"season", "Season", "Season", FieldType::Number, 0},
    {"episode", "Episode", "Episode Order", FieldType::Number, 0},
    {"location", "Location", "Location", FieldType::Text, 3},
    {"path", "Path", "", FieldType::Text, 3},
    {"status", "Status", "", FieldType::Text, 0},
}};

[[nodiscard]] constexpr std::size_t IndexOf(Field field) noexcept {
  return static_cast<std::size_t>(field);
}

[[nodiscard]] constexpr const FieldFacts& FactsOf(Field field) noexcept {
  return kFields[IndexOf(field)];
}

// The field of that name; case does not count. None when there is none.
[[nodiscard]] std::optional<Field> FindField(std::string_view name) noexcept;

// Fields by their keys in the file.
class FieldKeys {
 public:
  FieldKeys() noexcept;

  // None for a key that no field has.
  [[nodiscard]] std::optional<Field> Find(std::string_view key) const noexcept;

 private:
  static constexpr std::size_t kSlots = 256;
  static constexpr std::uint8_t kEmpty = 0xFF;

  [[nodiscard]] static std::size_t SlotOf(std::string_view key) noexcept;

  std::array<std::uint8_t, kSlots> fields_;
};

}  // namespace tavrel::host
