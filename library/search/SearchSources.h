// Where the texts that songs are searched by stand in the library file: what one walk over its
// tracks finds.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "library/tracks/TrackFields.h"
#include "system/Memory.h"
#include "xml/Records.h"

class TBXML;

namespace tavrel {

// A text as it stands in the file, and the first of the neighbouring tracks that share it.
struct TextSource {
  const char* text;  // none: the tracks have no such text
  std::uint32_t length : 31;
  std::uint32_t hasReferences : 1;
  std::uint32_t firstTrack;
};

class SearchSources {
 public:
  // The texts of one key, one for each run of neighbours with the same text.
  struct Column {
    std::span<const TextSource> sources;
    std::size_t withReferences;
  };

  SearchSources() noexcept = default;
  SearchSources(const SearchSources&) = delete;
  SearchSources& operator=(const SearchSources&) = delete;
  ~SearchSources() { system::ReleaseBlock(block_); }

  // Reads the tracks of a library document.
  // False when memory is exhausted or there are more than `mostTracks` tracks.
  [[nodiscard]] bool Read(const TBXML& document, std::uint32_t mostTracks) noexcept;

  [[nodiscard]] std::span<const std::int32_t> trackIds() const noexcept { return trackIds_; }
  [[nodiscard]] const std::array<Column, kSearchedFields.size()>& columns() const noexcept {
    return columns_;
  }
  // The length of all texts; that of the longest one with references.
  [[nodiscard]] std::size_t textBytes() const noexcept { return textBytes_; }
  [[nodiscard]] std::size_t longestWithReferences() const noexcept {
    return longestWithReferences_;
  }

 private:
  void ReadTrack(const TBXMLElement* dict) noexcept;
  void AddText(std::size_t column, const char* text) noexcept;

  system::ZeroedBlock block_;
  std::array<TextSource*, kSearchedFields.size()> sources_ = {};
  std::array<Column, kSearchedFields.size()> columns_ = {};
  std::span<std::int32_t> trackIds_;  // of the tracks read so far
  std::size_t textBytes_ = 0;
  std::size_t longestWithReferences_ = 0;
};

}  // namespace tavrel
