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

}  // namespace

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

}  // namespace tavrel::host
