// Playlists in the format XSPF, which is XML.
#pragma once

#include <string>
#include <string_view>

#include "host/export/PlaylistText.h"

namespace tavrel::host {

class XspfText : public PlaylistText {
 public:
  // name: of the playlist.
  explicit XspfText(std::string_view name);

  void Add(const PlaylistEntry& entry) override;
  [[nodiscard]] std::string Finish() override;

 private:
  std::string text_;
};

// Appends a text as what stands between two tags. What XML cannot hold becomes U+FFFD, bytes that are not UTF-8
// too; what nobody sees, and line ends, are written as references, so that they survive and are harmless.
void AppendXmlText(std::string& xml, std::string_view text);

// A path as a URL: a file URL, or for a relative path a relative one.
[[nodiscard]] std::string UrlOfPath(std::string_view path);

}  // namespace tavrel::host
