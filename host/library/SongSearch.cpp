#include "host/library/SongSearch.h"

#include <utility>

#include "host/library/KeptFailure.h"

namespace tavrel::host {
namespace {

struct Found {
  std::vector<std::int32_t> songs;
  KeptFailure failure;
};

std::int32_t Keep(std::int32_t index, void* context) {
  auto& found = *static_cast<Found*>(context);
  return found.failure.Keep([&] {
    found.songs.push_back(index);
    return 1;
  });
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
  Found found;
  library.findSongs(&info, Keep, &found);
  found.failure.Throw();
  return std::move(found.songs);
}

}  // namespace tavrel::host
