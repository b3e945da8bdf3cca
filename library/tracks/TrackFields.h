// The properties that are read of a track: one table for the readers of single properties, of whole
// tracks and of the texts that are searched.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "library/file/PropertyValue.h"
#include "tavrel/tavrel.h"

namespace tavrel {

struct TrackField {
  const char* key;
  char* SongInfo::*text;           // none for a number
  std::int32_t SongInfo::*number;  // or the text's size
  std::int32_t flags;              // as ReadValue() takes them
};

// In the order in which their values are read, which log lines show.
inline constexpr std::array<TrackField, 9> kTrackFields = {{
    {"Name", &SongInfo::name, &SongInfo::nameSize, SONGPROP_TEXT},
    {"Location", &SongInfo::location, &SongInfo::locationSize, SONGPROP_TEXT | SONGPROP_URL},
    {"Artist", &SongInfo::artist, &SongInfo::artistSize, SONGPROP_TEXT},
    {"Album", &SongInfo::album, &SongInfo::albumSize, SONGPROP_TEXT},
    {"Genre", &SongInfo::genre, &SongInfo::genreSize, SONGPROP_TEXT},
    {"Total Time", nullptr, &SongInfo::totalTime, 0},
    {"Play Count", nullptr, &SongInfo::playCount, 0},
    {"Movie", nullptr, &SongInfo::movie, 0},
    {"Track Number", nullptr, &SongInfo::trackNumber, 0},
}};
inline constexpr const char* kPersistentIdKey = "Persistent ID";  // read last, into bytes

// Numbers of properties: places in kTrackFields, and two more.
inline constexpr std::size_t kPersistentIdField = kTrackFields.size();
inline constexpr std::size_t kNoField = kPersistentIdField + 1;

// The fields that songs are searched by, in the order in which a search looks at them.
inline constexpr std::array<std::size_t, 3> kSearchedFields = {0, 2, 3};

namespace detail {

inline constexpr std::array<const char*, kNoField> kKeyOfField = [] {
  std::array<const char*, kNoField> keys{};
  for (std::size_t i = 0; i < kTrackFields.size(); ++i) keys[i] = kTrackFields[i].key;
  keys[kPersistentIdField] = kPersistentIdKey;
  return keys;
}();

// The keys differ in their first two bytes, which this tells apart.
constexpr std::size_t SlotOfKey(const char* key) noexcept {
  const auto first = static_cast<unsigned char>(key[0]);
  const auto second = static_cast<unsigned char>(key[1]);
  return (first * 6u + second) % 64;
}

inline constexpr std::array<std::uint8_t, 64> kFieldOfSlot = [] {
  std::array<std::uint8_t, 64> fields{};
  for (std::uint8_t& field : fields) field = kNoField;
  for (std::size_t i = 0; i < kNoField; ++i) {
    std::uint8_t& field = fields[SlotOfKey(kKeyOfField[i])];
    if (field != kNoField) throw "two keys share a slot";  // then this does not compile
    field = static_cast<std::uint8_t>(i);
  }
  return fields;
}();

}  // namespace detail

// The field that a key belongs to, kNoField for none. Most keys are of no field; the others take one
// comparison.
[[nodiscard]] inline std::size_t FieldOfKey(const char* key) noexcept {
  if (key == nullptr || key[0] == '\0') return kNoField;
  const std::size_t field = detail::kFieldOfSlot[detail::SlotOfKey(key)];
  if (field == kNoField || std::strcmp(key, detail::kKeyOfField[field]) != 0) return kNoField;
  return field;
}

}  // namespace tavrel
