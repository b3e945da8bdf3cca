#include "host/artwork/PersistentIds.h"

#include <algorithm>

namespace tavrel::host {
namespace {

// The text of the element behind a key that ends at `at`: 16 digits.
std::string IdBehind(std::string_view text, std::size_t at) {
  constexpr std::string_view kString = "<string>";
  const std::size_t start = text.find('<', at);
  if (start == std::string_view::npos || !text.substr(start).starts_with(kString)) {
    return std::string(kNoId);
  }
  return UpperCase(text.substr(start + kString.size(), kNoId.size()));
}

}  // namespace

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  for (char& letter : upper) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
  }
  return upper;
}

// Each track begins with its Track ID; behind the tracks, the same key stands in playlists.
PersistentIds FindPersistentIds(std::string_view libraryText) {
  constexpr std::string_view kKey = "<key>";
  PersistentIds ids;
  for (std::size_t at = libraryText.find(kKey); at != std::string_view::npos;
       at = libraryText.find(kKey, at)) {
    at += kKey.size();
    const std::string_view rest = libraryText.substr(at, 32);
    if (rest.starts_with("Playlists<")) break;
    if (rest.starts_with("Track ID<")) ids.tracks.emplace_back(kNoId);
    const std::size_t end = at + std::min(rest.find('<') + 1, rest.size());
    if (rest.starts_with("Library Persistent ID<")) ids.library = IdBehind(libraryText, end);
    if (rest.starts_with("Persistent ID<") && !ids.tracks.empty()) {
      ids.tracks.back() = IdBehind(libraryText, end);
    }
  }
  return ids;
}

}  // namespace tavrel::host
