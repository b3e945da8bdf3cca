// The keys of songs, and what they are here: fields, or other keys that are told by their own names.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/Fields.h"
#include "host/library/Library.h"
#include "host/library/TextHash.h"

namespace tavrel::host {

// Keys of the file that are no field's, in the order in which they came.
class OtherKeys {
 public:
  void Add(std::string_view key);
  [[nodiscard]] std::optional<std::size_t> Find(std::string_view key) const;
  [[nodiscard]] const std::deque<std::string>& All() const noexcept { return keys_; }

 private:
  std::deque<std::string> keys_;  // which stay where they are
  TextMap<std::size_t> numbers_;
};

// Adds all of them that the songs of the playlist have, from a position on. Cost: one walk over each song.
void CollectOtherKeys(const LibraryFunctions& library, PlaylistRecord* playlist, std::int32_t from,
                      OtherKeys& keys);

// Numbers for the keys of songs, which come in the same order in nearly all of them: the two that came behind a key the
// last times are compared first, and only what is another is looked up.
class SongKeys {
 public:
  // others: borrowed; they may grow. Null for none.
  explicit SongKeys(const OtherKeys* others);

  // Below kFieldCount a field's number; from there on that of another key, counted from kFieldCount. kUnknown for
  // a key that is neither.
  [[nodiscard]] std::size_t Find(const char* key) {
    const std::size_t guess = known_[last_].next;
    if (std::strcmp(known_[guess].key, key) != 0) return LookUp(key);
    last_ = guess;
    return guess;
  }

  static constexpr std::size_t kUnknown = static_cast<std::size_t>(-1);

 private:
  struct Known {
    const char* key;
    std::size_t next;    // the number of the key that came behind it
    std::size_t before;  // of another that did so before
  };

  [[nodiscard]] std::size_t LookUp(const char* key);

  FieldKeys fields_;
  const OtherKeys* others_;
  std::vector<Known> known_;  // by their numbers
  std::size_t last_ = 0;
};

}  // namespace tavrel::host
