#include "host/library/SongSearch.h"

namespace tavrel::host {
namespace {

std::int32_t Keep(std::int32_t index, void* context) {
  static_cast<std::vector<std::int32_t>*>(context)->push_back(index);
  return 1;
}

}  // namespace

std::vector<std::int32_t> FindSongs(const LibraryFunctions& library, const SearchTerms& terms) {
  const auto pointer = [](const std::optional<std::string>& term) {
    return term ? const_cast<char*>(term->c_str()) : nullptr;  // which the library only reads
  };
  SongInfo info = {};
  info.name = pointer(terms.name);
  info.artist = pointer(terms.artist);
  info.album = pointer(terms.album);
  std::vector<std::int32_t> found;
  library.findSongs(&info, Keep, &found);
  return found;
}

}  // namespace tavrel::host
