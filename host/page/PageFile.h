// The page as one file.
#pragma once

#include <string>
#include <vector>

#include "host/page/Contents.h"
#include "host/page/Payload.h"

namespace tavrel::host {

// Pictures for the page; a library without any has none of them.
struct PageCovers {
  std::vector<std::string> top;       // of the top albums, as data URLs; empty: none
  std::vector<std::string> pictures;  // each with the covers of many albums, as JPEG files
  CoverPlaces places = {};
  std::size_t albumsWithout = 0;  // of those that were looked for
};

// Songs fewer than these stand in the page as they are, so that also a browser that inflates nothing reads
// them.
inline constexpr std::size_t kFewSongs = 5000;

// A whole HTML file that fetches nothing, in pieces that stand one behind the other.
[[nodiscard]] std::vector<std::string> MakePage(const PageContents& contents,
                                                const PageCovers& covers, const std::string& title);

// Whether the file begins as every page does that this program has written.
[[nodiscard]] bool IsPage(const std::string& path);

}  // namespace tavrel::host
