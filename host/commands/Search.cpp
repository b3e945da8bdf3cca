// tavrel search: the songs whose name, artist or album holds a text.
#include <map>

#include "host/commands/Commands.h"
#include "host/commands/SongJson.h"
#include "host/commands/SpellingHint.h"
#include "host/library/Playlists.h"
#include "host/library/SongReader.h"
#include "host/library/SongSearch.h"
#include "host/output/FindRange.h"
#include "host/output/Table.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

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
  table.Print(session.terminal, session.output);
}

JsonValue JsonPlace(const FoundSong& found, const Places& places) {
  const auto place = places.find(found.playlist);
  if (place == places.end()) return kJsonNull;
  return JsonObject{{"group", place->second.group},
                    {"index", place->second.position},
                    {"name", place->second.name},
                    {"position", found.position}};
}

void PrintJson(const std::vector<FoundSong>& found, Session& session) {
  const Places places = ReadPlaces(session.library);
  SongReader reader(session.library);
  PlaylistRecord* all = session.library.openAllSongs();
  JsonList list(session.output);
  for (const FoundSong& each : found) {
    JsonObject element{{"playlist", JsonPlace(each, places)}};
    AddSong(element, reader.Read(all, each.track), session);
    list.Add(element);
  }
  list.End();
}

}  // namespace

ExitCode SearchSongs(const SearchArguments& arguments, Session& session) {
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

}  // namespace tavrel::host
