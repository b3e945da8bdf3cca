// What the songs of each artist, year, rating, ... come to.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/Fields.h"
#include "host/library/Library.h"

namespace tavrel::host {

// Of the songs that have one value.
struct Sum {
  std::string value;
  bool isNone = false;
  std::string artist;  // of an album
  std::int64_t songs = 0;
  std::int64_t time = 0;  // in milliseconds
  std::int64_t plays = 0;
};

// What songs are counted by.
struct Grouping {
  std::string_view name;  // "decade" and "added" go by a part of the field's value
  Field field;
  bool isNumber;  // sorted by the value, and all are shown
};

// All songs of the library, in the order in which the values come first. Values that differ only in how their
// accents are composed are the same; of albums, AlbumGrouping says which are one.
// Cost: one walk over every song.
[[nodiscard]] std::vector<Sum> SumUp(const Grouping& grouping, const LibraryFunctions& library);

}  // namespace tavrel::host
