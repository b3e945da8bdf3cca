#include "host/artwork/PersistentIds.h"

#include <algorithm>

#include "text/Ascii.h"

namespace tavrel::host {
namespace {

// The first 16 digits of what `get(buffer, bufferSize)` tells, as it tells all texts of the library.
template <class Get>
std::string IdFrom(Get get) {
  std::string text(kNoId.size() + 1, '\0');  // as long as they are
  const auto room = static_cast<std::int32_t>(text.size());
  const std::int32_t size = get(text.data(), room);
  if (size < room) return std::string(kNoId);
  text.resize(static_cast<std::size_t>(size));
  if (size > room) get(text.data(), size);
  return UpperCase(std::string_view(text).substr(0, kNoId.size()));
}

}  // namespace

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), text::ToUpperCase);
  return upper;
}

PersistentIds ReadPersistentIds(const LibraryFunctions& library) {
  PersistentIds ids;
  ids.library = IdFrom([&](char* buffer, std::int32_t size) {
    return library.getLibraryProperty("Library Persistent ID", buffer, size);
  });
  const PlaylistRecord* songs = library.openAllSongs();
  const std::int32_t count = library.getSongCount(songs);
  for (std::int32_t i = 0; i < count; ++i) {
    ids.tracks.push_back(IdFrom([&](char* buffer, std::int32_t size) {
      return library.getSongProperty(songs, i, "Persistent ID", buffer, size);
    }));
  }
  return ids;
}

}  // namespace tavrel::host
