// What a host sees of the library file's dictionaries: every pair, as a visit shows it, checked on the way
// against what a host is told that asks for the key.
#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/LoadedLibrary.h"

namespace tavrel::test {

struct SeenPair {
  std::string key;
  std::optional<std::string> text;
  std::string type;

  friend bool operator==(const SeenPair&, const SeenPair&) = default;
};

void PrintTo(const SeenPair& pair, std::ostream* stream);

using SeenPairs = std::vector<SeenPair>;

// Each key is asked for by its size and then for its text, into a buffer with guard bytes around it; of
// very large dictionaries only the first keys.
[[nodiscard]] SeenPairs SeeSongProperties(const HostFunctions& library,
                                          const PlaylistRecord* playlist, std::int32_t index);
[[nodiscard]] SeenPairs SeePlaylistProperties(const HostFunctions& library,
                                              const PlaylistRecord* playlist);
[[nodiscard]] SeenPairs SeeLibraryProperties(const HostFunctions& library);

// The text of the first pair with that key; none when there is no such pair, or it has no text.
[[nodiscard]] std::optional<std::string> TextOf(const SeenPairs& pairs, std::string_view key);

// Asks for a text by `get(buffer, bufferSize)`: first its size, then the text. None for the size 0. A
// buffer that is too small must stay as it was, and nothing may be written outside of one that is not.
using GetText = std::function<std::int32_t(char*, std::int32_t)>;
[[nodiscard]] std::optional<std::string> AskTwice(const GetText& get);

}  // namespace tavrel::test
