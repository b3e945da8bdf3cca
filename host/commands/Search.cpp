// tavrel search: the songs that hold all of some words.
#include <algorithm>
#include <memory>

#include "host/commands/Commands.h"
#include "host/commands/SongList.h"
#include "host/commands/SpellingHint.h"
#include "host/library/Playlists.h"
#include "host/library/SongMatching.h"
#include "host/library/SongPlaces.h"
#include "host/output/FindRange.h"
#include "host/output/Format.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

struct SearchArguments {
  SongQuery query;
  std::size_t limit = 0;  // 0: none
  bool countOnly = false;
  bool withLists = false;
  SongListOptions list;
};

using Mark = std::optional<TextRange>;

// Finds the first of the texts that a cell holds.
FindMark MarkOf(const std::vector<std::string>& wanted, bool exact) {
  std::vector<std::function<Mark(std::string_view)>> finders;
  for (const std::string& text : wanted) {
    if (exact) {
      const auto term = std::make_shared<const text::SearchTerm>(text);
      finders.emplace_back([term](std::string_view clean) { return FindRange(clean, *term); });
    } else {
      const auto term = std::make_shared<const AccentlessTerm>(text);
      finders.emplace_back([term](std::string_view clean) { return term->FindIn(clean); });
    }
  }
  return [finders](std::string_view clean) -> Mark {
    for (const auto& find : finders) {
      if (const Mark mark = find(clean)) return mark;
    }
    return std::nullopt;
  };
}

std::map<Field, FindMark> MarksOf(const SongQuery& query) {
  std::map<Field, std::vector<std::string>> texts;
  for (const FieldTerm& term : FieldTermsOf(query)) texts[term.field].push_back(*term.text);
  for (const Field field : kWordFields) {
    std::vector<std::string>& own = texts[field];
    own.insert(own.end(), query.words.begin(), query.words.end());
  }
  std::map<Field, FindMark> marks;
  for (const auto& [field, wanted] : texts) {
    if (!wanted.empty()) marks[field] = MarkOf(wanted, query.exact);
  }
  return marks;
}

std::vector<std::string> Named(const SongQuery& query) {
  std::vector<std::string> names = query.words;
  for (const FieldTerm& term : FieldTermsOf(query)) {
    if (std::find(names.begin(), names.end(), *term.text) == names.end())
      names.push_back(*term.text);
  }
  return names;
}

std::string NothingFoundBy(const SongQuery& query, const Library& library) {
  std::string message = "no song matches";
  std::string_view between = " ";
  for (const std::string& name : Named(query)) {
    message.append(between).append(1, '"').append(Clean(name)).append(1, '"');
    between = " and ";
  }
  if (query.years)
    message += std::string(Named(query).empty() ? " the year " : " in ") + Clean(*query.years);
  if (!query.exact || query.composer || query.genre || query.years) return message;
  const std::string word = query.words.empty() ? "" : query.words.front();
  const auto term = [&](const std::optional<std::string>& own) {
    return own || word.empty() ? own : std::optional(word);
  };
  const std::string hint =
      SpellingHint(library, {term(query.name), term(query.artist), term(query.album)});
  return message + hint;
}

void AddLists(SongList& list, const Session& session) {
  struct Known {
    std::vector<Playlist> playlists;
    std::optional<SongPlaces> places;
  };
  const auto known = std::make_shared<Known>();
  known->playlists = ReadPlaylists(session.library);
  known->places.emplace(session.library, known->playlists);
  list.listsOf = [known](std::int32_t song) {
    std::vector<std::string> names;
    for (const Playlist* playlist : known->places->Of(song)) {
      names.push_back(playlist->name.value_or(""));
    }
    return names;
  };
}

ExitCode SearchSongs(const SearchArguments& arguments, Session& session) {
  const SongQuery& query = arguments.query;
  // With an order the limit is that of what is shown, not of what is looked at.
  const bool isSorted = arguments.list.sort || arguments.list.isReversed;
  SongList list{.playlist = session.library.openAllSongs(),
                .positions = MatchSongs(session.library, query, isSorted ? 0 : arguments.limit),
                .tableFields = {Field::Name, Field::Artist, Field::Album, Field::Year, Field::Genre,
                                Field::Seconds},
                .withPositions = false,
                .marks = MarksOf(query),
                .listsOf = {},
                .limit = arguments.limit};
  const bool isEmpty = list.positions.empty();
  if (arguments.countOnly) {
    std::size_t count = list.positions.size();
    if (arguments.limit != 0) count = std::min(count, arguments.limit);
    session.output.WriteLine(std::to_string(count));
  } else {
    if (arguments.withLists) AddLists(list, session);
    PrintSongs(list, arguments.list, session);
  }
  if (!isEmpty) return ExitCode::Done;
  Complain(NothingFoundBy(query, session.library));
  return ExitCode::Failed;
}

void Check(const SearchArguments& arguments) {
  const SongQuery& query = arguments.query;
  const std::vector<FieldTerm> terms = FieldTermsOf(query);
  if (query.words.empty() && terms.empty() && !query.years) {
    throw UsageError("search needs a WORD, or --name, --artist, --album, ...");
  }
  const auto isEmpty = [](const std::string& text) { return text.empty(); };
  if (std::any_of(query.words.begin(), query.words.end(), isEmpty) ||
      std::any_of(terms.begin(), terms.end(),
                  [](const FieldTerm& term) { return term.text->empty(); })) {
    throw UsageError("search: an empty text is never found");
  }
  if (query.years && !AreYears(*query.years)) {
    throw UsageError("--year: a year, or two as in 1990-1999");
  }
}

void AddTerms(CommandDefinition command, SongQuery& query) {
  command.AddPlaces("WORD", query.words, 0,
                    "Texts that a song must hold, each anywhere in its name, artist,\n"
                    "album artist, album or composer; case and accents do not count");
  command.AddFlag(
      "--exact", query.exact,
      "Accents count, and words stand in name, artist or album: the library's own rule");
  command.AddText("--name", query.name, "TEXT", "A part of the name");
  command.AddText("--artist", query.artist, "TEXT", "A part of the artist");
  command.AddText("--album", query.album, "TEXT", "A part of the album");
  command.AddText("--composer", query.composer, "TEXT", "A part of the composer");
  command.AddText("--genre", query.genre, "TEXT", "A part of the genre");
  command.AddText("--year", query.years, "YEAR",
                  "The year, or the first and the last one: 1990-1999");
}

}  // namespace

void DefineSearch(CommandDefinition program) {
  const auto arguments = std::make_shared<SearchArguments>();
  CommandDefinition command = program.AddCommand("search", "Find songs by words");
  AddTerms(command, arguments->query);
  command.AddCount("--limit", arguments->limit, "N", "Show so many songs at most");
  command.AddFlag("--count", arguments->countOnly, "Print the number of songs only");
  command.AddFlag("--lists", arguments->withLists, "Also the playlists that hold each song");
  AddSongListOptions(command, arguments->list);
  command.Makes([arguments] {
    Check(*arguments);
    return Task{.run = [arguments](Session& session) { return SearchSongs(*arguments, session); }};
  });
}

}  // namespace tavrel::host
