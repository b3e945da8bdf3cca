// The songs as the page carries them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/page/Contents.h"

namespace tavrel::host {

// Where the covers of albums stand in the pictures that hold many of them.
struct CoverPlaces {
  std::vector<std::int64_t> numbers = {};  // for each album from 1; 0: it has none
  std::int64_t side = 0;                   // of a cover, in pixels
  std::int64_t columns = 1;                // of a picture, in covers
  std::int64_t perPicture = 1;
};

// The length of a JSON text in 4 bytes, lowest first; the text, which describes the columns and holds the
// texts; and the bytes of the columns, of the songs' albums, of the covers and of the playlists, in the order
// in which the JSON text names them.
//
//   0        4                       4 + length
//   | length | {"songs":…,"columns":… | name │ artist │ … │ albums │ covers │ playlists |
[[nodiscard]] std::string MakePayload(const PageContents& contents, const CoverPlaces& covers);

// Appends them as gzip files, which hold a part each and are made at the same time, in Base64 with blanks between them.
void AppendCompressed(std::string& text, std::string_view bytes);

}  // namespace tavrel::host
