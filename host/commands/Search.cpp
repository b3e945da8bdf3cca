// tavrel search: the songs whose name, artist or album holds a text.
#include <map>
#include <memory>

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

// Finds a term's match in a cell; none without a term.
FindMark MarkOf(const std::optional<std::string>& term) {
  if (!term) return [](std::string_view) { return std::nullopt; };
  const auto wanted = std::make_shared<const text::SearchTerm>(*term);
  return [wanted](std::string_view clean) { return FindRange(clean, *wanted); };
}

void AddPlace(const FoundSong& found, const Places& places, Rows& rows) {
  const auto place = places.find(found.playlist);
  if (place == places.end()) {
    for (int i = 0; i < 3; ++i) rows.Add("");
    return;
  }
  const Playlist& playlist = place->second;
  rows.Add(playlist.name.value_or(""));
  rows.Add(std::to_string(playlist.group) + ":" + std::to_string(playlist.position));
  rows.Add(found.position);
}

void PrintTable(const std::vector<FoundSong>& found, const SearchTerms& terms, Session& session) {
  const FindMark nameMark = MarkOf(terms.name);
  const FindMark artistMark = MarkOf(terms.artist);
  const FindMark albumMark = MarkOf(terms.album);
  const Places places = ReadPlaces(session.library);
  SongReader reader(session.library);
  PlaylistRecord* all = session.library.openAllSongs();
  const Table table({{.title = "Name", .weight = 3},
                     {.title = "Artist", .weight = 2, .rank = 1},
                     {.title = "Album", .weight = 2, .rank = 2},
                     {.title = "Playlist", .style = Style::Dim, .weight = 2, .rank = 3},
                     {.title = "At", .style = Style::Dim},
                     {.title = "#", .align = Align::Right, .style = Style::Dim}},
                    [&](Rows& rows) {
                      for (const FoundSong& each : found) {
                        const Song& song = reader.Read(all, each.track);
                        rows.AddMarked(song.name.value_or(""), nameMark);
                        rows.AddMarked(song.artist.value_or(""), artistMark);
                        rows.AddMarked(song.album.value_or(""), albumMark);
                        AddPlace(each, places, rows);
                      }
                    });
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
