// The songs as the page carries them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
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

// Bytes in pieces, one behind the other.
class Payload {
 public:
  // Keeps bytes as long as the payload itself lasts.
  [[nodiscard]] std::string_view Keep(std::string bytes) {
    return kept_.emplace_back(std::move(bytes));
  }
  // The next piece. Borrowed.
  void Append(std::string_view bytes) {
    pieces_.push_back(bytes);
    size_ += bytes.size();
  }

  [[nodiscard]] std::size_t Size() const noexcept { return size_; }
  // A copy of so many bytes, or of those that there are from there on.
  [[nodiscard]] std::string Part(std::size_t from, std::size_t size) const;

 private:
  std::deque<std::string> kept_;  // which stay where they are
  std::vector<std::string_view> pieces_;
  std::size_t size_ = 0;
};

// The length of a JSON text in 4 bytes, lowest first; the text, which describes the columns and holds the
// texts; and the bytes of the columns, of the songs' albums, of the covers and of the playlists, in the order
// in which the JSON text names them. Borrows from the contents.
//
//   0        4                       4 + length
//   | length | {"songs":…,"columns":… | name │ artist │ … │ albums │ covers │ playlists |
[[nodiscard]] Payload MakePayload(const PageContents& contents, const CoverPlaces& covers);

// Appends them as gzip files, which hold a part each and are made at the same time, in Base64 with blanks between them.
void AppendCompressed(std::string& text, const Payload& payload);

}  // namespace tavrel::host
