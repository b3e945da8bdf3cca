// Texts of library files, put together piece by piece in the layout that iTunes writes.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace tavrel::test {

// Pairs of a dictionary. Texts stand in the file as they are given: escape them beforehand.
[[nodiscard]] std::string TextPair(std::string_view key, std::string_view text);
[[nodiscard]] std::string IntegerPair(std::string_view key, long long value);
[[nodiscard]] std::string BooleanPair(std::string_view key, bool value);

// A track: the key with its ID and its dictionary, which begins with the pair "Track ID".
[[nodiscard]] std::string Track(int id, std::string_view pairs = {});
// The dictionary of a playlist, with an item for each ID (and no item list without any).
[[nodiscard]] std::string Playlist(std::string_view pairs, std::initializer_list<int> ids = {});
[[nodiscard]] std::string PlaylistItem(int id);

struct LibraryParts {
  std::string tracks;
  std::string playlists;
  std::string topPairs = TextPair("Library Persistent ID", "0123456789ABCDEF");
};
[[nodiscard]] std::string LibraryText(const LibraryParts& parts);

// A small library with something of everything: tracks 101, 103, 105, 107 and 109, playlists of all
// groups, a hidden one, escapes, accents, a remote track and a movie.
[[nodiscard]] std::string SmallLibraryText();

}  // namespace tavrel::test
