// Other ways to search the same texts. Each peer has the texts of all tracks, decoded and in the
// encoding that it works on, before it is measured.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::bench {

// Name, artist and album of each track.
using TrackTexts = std::vector<std::array<std::string, 3>>;

class SearchPeer {
 public:
  virtual ~SearchPeer() = default;
  [[nodiscard]] virtual std::string_view Name() const = 0;
  // The number of tracks of which any text contains `term`. Each call does the whole work.
  [[nodiscard]] virtual std::int64_t Count(const std::string& term) = 0;
};

// ICU's string search at secondary strength, normalising: accents count, case does not.
[[nodiscard]] std::unique_ptr<SearchPeer> MakeIcuStringSearch(const TrackTexts& texts);
// ICU's decomposition, case folding and decomposition of each text, then a plain search in it.
[[nodiscard]] std::unique_ptr<SearchPeer> MakeIcuFolding(const TrackTexts& texts);
// utf8proc_map() on each text, then memmem().
[[nodiscard]] std::unique_ptr<SearchPeer> MakeUtf8procMap(const TrackTexts& texts);
// A program that searches the lines of the library file: `grep` or `rg`. None when there is none.
[[nodiscard]] std::unique_ptr<SearchPeer> MakeGrep(const std::string& program,
                                                   const std::string& file);

}  // namespace tavrel::bench
