#include "host/commands/SpellingHint.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "host/library/SongReader.h"
#include "host/output/FindRange.h"
#include "host/output/Format.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kMostSpellings = 3;

// A spelling as the library writes it, and how many songs have it.
struct Spelling {
  std::string text;
  std::int64_t songs = 0;
};

using Spellings = std::map<std::string, Spelling>;  // by their folded form

// The terms, prepared once for any number of songs.
class Terms {
 public:
  explicit Terms(const SearchTerms& terms) {
    if (terms.name) name_.emplace(*terms.name);
    if (terms.artist) artist_.emplace(*terms.artist);
    if (terms.album) album_.emplace(*terms.album);
  }

  [[nodiscard]] std::optional<std::string> FirstSpellingIn(const Song& song) const {
    std::optional<std::string> found = SpellingIn(song.name, name_);
    if (!found) found = SpellingIn(song.artist, artist_);
    if (!found) found = SpellingIn(song.album, album_);
    return found;
  }

 private:
  static std::optional<std::string> SpellingIn(const std::optional<std::string_view>& text,
                                               const std::optional<AccentlessTerm>& term) {
    if (!text || !term) return std::nullopt;
    const std::optional<TextRange> range = term->FindIn(*text);
    if (!range) return std::nullopt;
    return std::string(text->substr(range->from, range->to - range->from));
  }

  std::optional<AccentlessTerm> name_;
  std::optional<AccentlessTerm> artist_;
  std::optional<AccentlessTerm> album_;
};

void Count(const std::string& found, Spellings& spellings) {
  Spelling& spelling = spellings[Fold(found)];
  if (spelling.text.empty()) spelling.text = Compose(found);
  ++spelling.songs;
}

std::vector<Spelling> MostFrequent(const Spellings& spellings) {
  std::vector<Spelling> list;
  for (const auto& [folded, spelling] : spellings) list.push_back(spelling);
  std::stable_sort(list.begin(), list.end(),
                   [](const Spelling& a, const Spelling& b) { return a.songs > b.songs; });
  if (list.size() > kMostSpellings) list.resize(kMostSpellings);
  return list;
}

}  // namespace

std::string SpellingHint(const LibraryFunctions& library, const SearchTerms& terms) {
  const Terms prepared(terms);
  Spellings spellings;
  ForEachSong(library, library.openAllSongs(), [&](std::int32_t, const Song& song) {
    if (const auto found = prepared.FirstSpellingIn(song)) Count(*found, spellings);
  });

  if (spellings.empty()) return {};
  std::string message = "; accents count. Do you mean:";
  for (const Spelling& spelling : MostFrequent(spellings)) {
    message += "\n  " + Clean(spelling.text) + "  (" + Counted(spelling.songs, "song") + ")";
  }
  return message;
}

}  // namespace tavrel::host
