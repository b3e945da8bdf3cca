// Playlists in the format M3U: a line a song, and before it a line with its length, artist and title.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/export/PlaylistText.h"

namespace tavrel::host {

enum class M3uEncoding {
  Utf8,
  // Where every character of the list has a byte there; else UTF-8, and a line of the file says so.
  Latin1,
};

// Whatever texts and paths hold, each is one line: a text loses its line ends and what nobody sees; where a path
// would not be read as itself from a line (line ends, control characters, blanks at its end, bytes that are
// not UTF-8) its file URL stands there.
class M3uText : public PlaylistText {
 public:
  // name: of the playlist.
  M3uText(std::string_view name, M3uEncoding encoding);

  void Add(const PlaylistEntry& entry) override;
  [[nodiscard]] std::string Finish() override;

  // Once it is finished: whether it is in UTF-8 though Latin-1 was asked for.
  [[nodiscard]] bool IsBeyondLatin1() const noexcept { return isBeyondLatin1_; }

 private:
  M3uEncoding encoding_;
  std::string text_;  // in UTF-8
  bool isBeyondLatin1_ = false;
};

// The text in Latin-1; none when that lacks one of its characters.
[[nodiscard]] std::optional<std::string> ToLatin1(std::string_view utf8);

}  // namespace tavrel::host
