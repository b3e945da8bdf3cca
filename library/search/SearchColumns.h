// The texts that songs are searched by, decoded and folded once: a column of names, one of artists
// and one of albums, in the library file's order.
//
//   block: | Track IDs | runs and faulty texts, column by column | joined bits | texts |
//   texts: "beat it\0heartbeat\0..." names, then artists, then albums
//
// Neighbouring tracks with the same text, as those of an album, share one copy of it: a run.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "library/search/SearchSources.h"
#include "system/Memory.h"
#include "text/TextSearch.h"
#include "xml/Records.h"

namespace tavrel {

struct TextRun {
  std::uint32_t text;        // the offset of the text, empty where the tracks have none
  std::uint32_t firstTrack;  // the run ends where the next one begins
};

// A text whose references are in error: each look at it is to be logged.
struct FaultyText {
  const char* source;
  std::uint32_t firstTrack;
  std::uint32_t endTrack;
};

struct SearchColumn {
  std::span<TextRun> runs;  // the last one stands for the end
  std::span<FaultyText> faulty;
};

// A plain record: all zero is empty.
struct SearchColumns {
  system::ZeroedBlock block;  // everything stands here
  std::span<std::int32_t> trackIds;
  std::array<SearchColumn, kSearchedFields.size()> columns;
  text::FoldedTexts texts;
};

// Reads the columns of a library document's tracks. False, with nothing read, when memory is exhausted,
// there are more than `mostTracks` tracks, or their texts would take more than 4 GiB. Logs nothing.
// Cost: one walk over the tracks; 4 bytes for each track, 8 for each run, and a good byte for each
// byte of the folded texts. (In a library of 100,000 tracks that comes to 42 bytes a track; another
// 52 a track are needed while the columns are read.)
[[nodiscard]] bool ReadSearchColumns(const TBXML& document, std::uint32_t mostTracks,
                                     SearchColumns& columns) noexcept;

}  // namespace tavrel
