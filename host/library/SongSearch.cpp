#include "host/library/SongSearch.h"

#include <algorithm>

#include "host/library/SongReader.h"
#include "text/TextSearch.h"

namespace tavrel::host {
namespace {

// What the library tells, call by call.
struct Listener {
  std::size_t limit;
  std::int32_t tracks = 0;  // told of so far
  std::vector<FoundSong> placed = {};
};

std::int32_t Listen(PlaylistRecord* playlist, std::int32_t index, void* context) {
  auto& listener = *static_cast<Listener*>(context);
  const std::int32_t track = listener.tracks++;
  if (playlist != nullptr) listener.placed.push_back({track, playlist, index});
  return listener.limit != 0 && listener.placed.size() == listener.limit ? 0 : 1;
}

SongInfo InfoOf(const SearchTerms& terms) {
  const auto pointer = [](const std::optional<std::string>& term) {
    return term ? const_cast<char*>(term->c_str()) : nullptr;  // which the library only reads
  };
  SongInfo info = {};
  info.name = pointer(terms.name);
  info.artist = pointer(terms.artist);
  info.album = pointer(terms.album);
  return info;
}

bool Contains(const std::optional<std::string_view>& text,
              const std::optional<text::SearchTerm>& term) {
  return text && term && term->IsIn(*text);
}

// Looks through the tracks that the library has told nothing of but that they are there: a song
// without a playlist is told of like one that does not match.
void AddUnplaced(const LibraryFunctions& library, const SearchTerms& terms, std::int32_t tracks,
                 std::vector<FoundSong>& found) {
  std::optional<text::SearchTerm> name;
  std::optional<text::SearchTerm> artist;
  std::optional<text::SearchTerm> album;
  if (terms.name) name.emplace(*terms.name);
  if (terms.artist) artist.emplace(*terms.artist);
  if (terms.album) album.emplace(*terms.album);

  SongReader reader(library);
  PlaylistRecord* all = library.openAllSongs();
  const std::vector<FoundSong> placed = std::move(found);
  found.clear();
  auto next = placed.begin();
  for (std::int32_t track = 0; track < tracks; ++track) {
    if (next != placed.end() && next->track == track) {
      found.push_back(*next++);
      continue;
    }
    const Song& song = reader.Read(all, track);
    if (Contains(song.name, name) || Contains(song.artist, artist) || Contains(song.album, album)) {
      found.push_back({track, nullptr, 0});
    }
  }
}

}  // namespace

std::vector<FoundSong> FindSongs(const LibraryFunctions& library, const SearchTerms& terms,
                                 std::size_t limit) {
  const SongInfo info = InfoOf(terms);
  Listener listener{limit};
  const auto count = static_cast<std::size_t>(library.searchSong(&info, Listen, &listener));
  std::vector<FoundSong>& found = listener.placed;
  if (count > found.size()) AddUnplaced(library, terms, listener.tracks, found);
  if (limit != 0 && found.size() > limit) found.resize(limit);
  return std::move(found);
}

std::size_t CountSongs(const LibraryFunctions& library, const SearchTerms& terms,
                       std::size_t limit) {
  const SongInfo info = InfoOf(terms);
  Listener listener{limit};
  const auto count = static_cast<std::size_t>(library.searchSong(&info, Listen, &listener));
  return limit == 0 ? count : std::min(count, limit);
}

}  // namespace tavrel::host
