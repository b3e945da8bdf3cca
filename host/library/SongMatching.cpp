#include "host/library/SongMatching.h"

#include <string.h>

#include <algorithm>
#include <charconv>
#include <functional>
#include <memory>

#include "host/output/FindRange.h"
#include "text/TextSearch.h"

namespace tavrel::host {
namespace {

struct Years {
  std::int64_t first = INT64_MIN;
  std::int64_t last = INT64_MAX;
};

std::optional<std::int64_t> ParseYear(std::string_view text) {
  std::int64_t year = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), year);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber && year >= 0 ? std::optional(year) : std::nullopt;
}

std::optional<Years> ParseYears(std::string_view text) {
  const std::size_t dash = text.find('-');
  const auto first = ParseYear(text.substr(0, dash));
  const auto last = dash == std::string_view::npos ? first : ParseYear(text.substr(dash + 1));
  if (!first || !last) return std::nullopt;
  return Years{*first, *last};
}

bool Contains(const std::string& text, const std::string& part) {
  // Linear, which the search of std::string is not.
  return ::memmem(text.data(), text.size(), part.data(), part.size()) != nullptr;
}

std::string Accentless(std::string_view text) {
  std::string folded;
  AppendAccentless(folded, text);
  return folded;
}

bool IsInYears(const SongRecord& song, const Years& years) {
  const auto year = song.Number(Field::Year);
  return year && *year >= years.first && *year <= years.last;
}

// Case and accents do not count.
class LooseMatcher {
 public:
  explicit LooseMatcher(const SongQuery& query) {
    for (const std::string& word : query.words) words_.push_back(Accentless(word));
    for (const FieldTerm& term : FieldTermsOf(query)) {
      terms_.push_back({term.field, Accentless(*term.text)});
    }
    if (query.years) years_ = ParseYears(*query.years);
  }

  // Nothing is found by what is nothing but accents.
  [[nodiscard]] bool CanMatch() const {
    return std::none_of(words_.begin(), words_.end(),
                        [](const auto& word) { return word.empty(); }) &&
           std::none_of(terms_.begin(), terms_.end(),
                        [](const auto& term) { return term.text.empty(); });
  }

  bool Matches(const SongRecord& song) {
    if (years_ && !IsInYears(song, *years_)) return false;
    for (const Term& term : terms_) {
      folded_.clear();
      AppendAccentless(folded_, song.Text(term.field).value_or(""));
      if (!Contains(folded_, term.text)) return false;
    }
    if (words_.empty()) return true;
    folded_.clear();
    for (const Field field : kWordFields) {
      AppendAccentless(folded_, song.Text(field).value_or(""));
      folded_ += '\0';  // no word reaches from one text into the next
    }
    return std::all_of(words_.begin(), words_.end(),
                       [this](const std::string& word) { return Contains(folded_, word); });
  }

 private:
  struct Term {
    Field field;
    std::string text;
  };

  std::vector<std::string> words_;
  std::vector<Term> terms_;
  std::optional<Years> years_;
  std::string folded_;
};

// ---- The library's own rule ---------------------------------------------------------------------

// Keeps of `found` what the library finds by these terms.
void Keep(const LibraryFunctions& library, const SearchTerms& terms, std::vector<bool>& found) {
  std::vector<bool> matches(found.size(), false);
  for (const std::int32_t song : FindSongs(library, terms)) {
    matches[static_cast<std::size_t>(song)] = true;
  }
  for (std::size_t i = 0; i < found.size(); ++i) found[i] = found[i] && matches[i];
}

std::vector<std::int32_t> MatchExactly(const LibraryFunctions& library, const SongQuery& query) {
  PlaylistRecord* all = library.openAllSongs();
  std::vector<bool> found(static_cast<std::size_t>(library.getSongCount(all)), true);
  for (const std::string& word : query.words) Keep(library, {word, word, word}, found);
  if (query.name) Keep(library, {query.name, {}, {}}, found);
  if (query.artist) Keep(library, {{}, query.artist, {}}, found);
  if (query.album) Keep(library, {{}, {}, query.album}, found);

  std::optional<text::SearchTerm> composer;
  std::optional<text::SearchTerm> genre;
  std::optional<Years> years;
  if (query.composer) composer.emplace(*query.composer);
  if (query.genre) genre.emplace(*query.genre);
  if (query.years) years = ParseYears(*query.years);
  SongRecordReader reader(library, SetOf({Field::Composer, Field::Genre, Field::Year}));
  std::vector<std::int32_t> songs;
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (!found[i]) continue;
    const auto position = static_cast<std::int32_t>(i);
    const SongRecord& song = reader.Read(all, position);
    if (composer && !composer->IsIn(song.Text(Field::Composer).value_or(""))) continue;
    if (genre && !genre->IsIn(song.Text(Field::Genre).value_or(""))) continue;
    if (years && !IsInYears(song, *years)) continue;
    songs.push_back(position);
  }
  return songs;
}

std::vector<std::int32_t> MatchLoosely(const LibraryFunctions& library, const SongQuery& query,
                                       std::size_t limit) {
  LooseMatcher matcher(query);
  if (!matcher.CanMatch()) return {};
  FieldSet wanted = SetOf({Field::Year, Field::Genre});
  for (const Field field : kWordFields) wanted.set(IndexOf(field));
  PlaylistRecord* all = library.openAllSongs();
  SongRecordReader reader(library, wanted);
  std::vector<std::int32_t> songs;
  const std::int32_t count = library.getSongCount(all);
  for (std::int32_t i = 0; i < count && (limit == 0 || songs.size() < limit); ++i) {
    if (matcher.Matches(reader.Read(all, i))) songs.push_back(i);
  }
  return songs;
}

}  // namespace

bool AreYears(std::string_view text) {
  return ParseYears(text).has_value();
}

std::vector<FieldTerm> FieldTermsOf(const SongQuery& query) {
  std::vector<FieldTerm> terms;
  const auto add = [&](Field field, const std::optional<std::string>& text) {
    if (text) terms.push_back({field, &*text});
  };
  add(Field::Name, query.name);
  add(Field::Artist, query.artist);
  add(Field::Album, query.album);
  add(Field::Composer, query.composer);
  add(Field::Genre, query.genre);
  return terms;
}

std::vector<std::int32_t> MatchSongs(const LibraryFunctions& library, const SongQuery& query,
                                     std::size_t limit) {
  if (!query.exact) return MatchLoosely(library, query, limit);
  std::vector<std::int32_t> songs = MatchExactly(library, query);
  if (limit != 0 && songs.size() > limit) songs.resize(limit);
  return songs;
}

}  // namespace tavrel::host
