// tavrel search: the songs whose name, artist or album holds a text.
#include <CLI/Error.hpp>
#include <CLI/Validators.hpp>
#include <map>

#include "host/Commands.h"
#include "host/SpellingHint.h"
#include "host/library/SongReader.h"
#include "host/library/SongSearch.h"
#include "host/output/FindRange.h"
#include "host/output/SongJson.h"
#include "host/output/Table.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

struct Arguments {
  std::optional<std::string> any;
  SearchTerms terms;
  std::size_t limit = 0;
  bool countOnly = false;
};

using Places = std::map<PlaylistRecord*, Playlist>;

Places ReadPlaces(const Library& library) {
  Places places;
  for (const Playlist& playlist : ReadPlaylists(library)) places[playlist.handle] = playlist;
  return places;
}

// A term's matches in the cells of a table.
class Marker {
 public:
  explicit Marker(const std::optional<std::string>& term) {
    if (term) term_.emplace(*term);
  }

  void Add(const std::optional<std::string_view>& text, const Terminal& terminal, Table& table) {
    const std::string clean = Clean(text.value_or(""));
    std::optional<TextRange> range;
    if (terminal.styled && term_) range = FindRange(clean, *term_);
    if (!range) range = TextRange{0, 0};
    table.AddMarked(clean, range->from, range->to);
  }

 private:
  std::optional<text::SearchTerm> term_;
};

void PrintTable(const std::vector<FoundSong>& found, const SearchTerms& terms, Session& session) {
  Table table({{.title = "Name", .weight = 3},
               {.title = "Artist", .weight = 2, .rank = 1},
               {.title = "Album", .weight = 2, .rank = 2},
               {.title = "Playlist", .style = Style::Dim, .weight = 2, .rank = 3},
               {.title = "At", .style = Style::Dim},
               {.title = "#", .align = Align::Right, .style = Style::Dim}});
  Marker names(terms.name);
  Marker artists(terms.artist);
  Marker albums(terms.album);
  Places places = ReadPlaces(session.library);
  SongReader reader(session.library);
  PlaylistRecord* all = session.library.openAllSongs();
  for (const FoundSong& each : found) {
    const Song& song = reader.Read(all, each.track);
    names.Add(song.name, session.terminal, table);
    artists.Add(song.artist, session.terminal, table);
    albums.Add(song.album, session.terminal, table);
    if (each.playlist == nullptr) {
      for (int i = 0; i < 3; ++i) table.Add("");
      continue;
    }
    const Playlist& playlist = places[each.playlist];
    table.Add(playlist.name.value_or(""));
    table.Add(std::to_string(playlist.group) + ":" + std::to_string(playlist.position));
    table.Add(each.position);
  }
  for (const std::string& line : table.Lines(session.terminal)) session.output.WriteLine(line);
}

Json JsonPlace(const FoundSong& found, const Places& places) {
  const auto place = places.find(found.playlist);
  if (place == places.end()) return nullptr;
  return {{"group", place->second.group},
          {"index", place->second.position},
          {"name", JsonText(place->second.name)},
          {"position", found.position}};
}

void PrintJson(const std::vector<FoundSong>& found, Session& session) {
  const Places places = ReadPlaces(session.library);
  SongReader reader(session.library);
  PlaylistRecord* all = session.library.openAllSongs();
  JsonList list(session.output);
  for (const FoundSong& each : found) {
    Json element = {{"playlist", JsonPlace(each, places)}};
    element.update(JsonSong(reader.Read(all, each.track), session));
    list.Add(element);
  }
  list.End();
}

ExitCode Search(const Arguments& arguments, Session& session) {
  const SearchTerms& terms = arguments.terms;
  bool isEmpty = false;
  if (arguments.countOnly) {
    const std::size_t count = CountSongs(session.library, terms, arguments.limit);
    session.output.WriteLine(std::to_string(count));
    isEmpty = count == 0;
  } else {
    const std::vector<FoundSong> found = FindSongs(session.library, terms, arguments.limit);
    isEmpty = found.empty();
    if (session.options.json) {
      PrintJson(found, session);
    } else if (!isEmpty) {
      PrintTable(found, terms, session);
    }
  }
  if (!isEmpty) return ExitCode::Done;
  Complain(NothingFound(session.library, terms));
  return ExitCode::Failed;
}

void CheckArguments(Arguments& arguments) {
  SearchTerms& terms = arguments.terms;
  if (arguments.any.has_value() == (terms.name || terms.artist || terms.album)) {
    throw CLI::ValidationError("search needs either TERM or any of --name, --artist and --album");
  }
  if (arguments.any) terms = {arguments.any, arguments.any, arguments.any};
  for (const auto& term : {terms.name, terms.artist, terms.album}) {
    if (term && term->empty()) throw CLI::ValidationError("search: an empty text is never found");
  }
}

}  // namespace

void AddSearch(CLI::App& parser, Run& run) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App* command =
      parser.add_subcommand("search", "Find songs by a part of their name, artist or album");
  command->add_option("TERM", arguments->any, "A part of any of them; accents count, case does not")
      ->type_name("");
  SearchTerms& terms = arguments->terms;
  command->add_option("--name", terms.name, "A part of the name")->type_name("TEXT");
  command->add_option("--artist", terms.artist, "A part of the artist, as an alternative")
      ->type_name("TEXT");
  command->add_option("--album", terms.album, "A part of the album, as an alternative")
      ->type_name("TEXT");
  command->add_option("--limit", arguments->limit, "Stop after so many songs")
      ->option_text("N")
      ->check(CLI::Range(1, 2147483647));
  command->add_flag("--count", arguments->countOnly, "Print the number of songs only");
  command->callback([&run, arguments] {
    CheckArguments(*arguments);
    run = [arguments](Session& session) { return Search(*arguments, session); };
  });
}

}  // namespace tavrel::host
