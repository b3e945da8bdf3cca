#include "host/export/Database.h"

#include <charconv>
#include <optional>
#include <utility>
#include <vector>

#include "host/export/Schema.h"
#include "host/export/Sqlite.h"
#include "host/library/KeptFailure.h"
#include "host/library/PlaylistTree.h"
#include "host/library/Playlists.h"
#include "host/library/SongPlaces.h"
#include "host/library/SongRecord.h"
#include "host/output/NewFile.h"
#include "host/output/Progress.h"

namespace tavrel::host {
namespace {

// Nobody else sees the file, and what fails is thrown away as a whole.
constexpr const char* kAlone =
    "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA locking_mode = EXCLUSIVE;"
    "PRAGMA temp_store = MEMORY; PRAGMA cache_size = -65536; PRAGMA user_version = 1; BEGIN;";

constexpr int kSongsBetweenLooks = 256;  // for signals that are to end the program

std::optional<std::int64_t> ParseInteger(std::string_view text) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<double> ParseReal(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber ? std::optional(number) : std::nullopt;
}

// A value by its type in the file; one that is not what its type says is a text.
void AddValue(SqliteInsertion& insertion, const char* text, std::string_view type) {
  if (text == nullptr) return insertion.AddNull();
  if (type == "true" || type == "false") return insertion.Add(std::int64_t{type == "true"});
  if (type == "integer") {
    if (const auto number = ParseInteger(text)) return insertion.Add(*number);
  }
  if (type == "real") {
    if (const auto number = ParseReal(text)) return insertion.AddReal(*number);
  }
  insertion.Add(std::string_view(text));
}

class DatabaseWriter {
 public:
  DatabaseWriter(Sqlite& database, Session& session)
      : database_(database), session_(session), library_(session.library) {}

  DatabaseCounts Write() {
    database_.Run(kAlone + TablesOfDatabase());
    WriteLibrary();
    WriteTracks();
    WritePlaylists();
    database_.Run(IndexesOfDatabase() + "COMMIT;");
    return std::move(counts_);
  }

 private:
  // A failure may not pass through the library: the visitor keeps it until the walk is over.
  struct PropertyWalk {
    SqliteInsertion& insertion;
    KeptFailure failure = {};
  };

  static std::int32_t VisitProperty(const char* key, const char* text, const char* type,
                                    void* context) {
    auto& walk = *static_cast<PropertyWalk*>(context);
    return walk.failure.Keep([&] {
      AddProperty(walk.insertion, key, text, type);
      return 1;
    });
  }

  static void AddProperty(SqliteInsertion& insertion, const char* key, const char* text,
                          const char* type) {
    insertion.Add(std::string_view(key));
    insertion.Add(std::string_view(type));
    AddValue(insertion, text, type);
    insertion.EndRow();
  }

  void WriteLibrary() {
    SqliteInsertion insertion(database_, "library", 3);
    PropertyWalk walk{insertion};
    library_.visitLibraryProperties(VisitProperty, &walk);
    walk.failure.Throw();
    insertion.Finish();
  }

  void WriteTracks() {
    SqliteInsertion tracks(database_, "tracks", kFieldCount + 1);
    SqliteInsertion properties(database_, "properties", 4);
    PlaylistRecord* all = library_.openAllSongs();
    SongRecordReader reader(library_, FieldSet().set());
    std::int64_t song = 0;
    reader.ShowPairs([&](std::size_t number, const char* key, const char* text, const char* type) {
      if (number != SongKeys::kUnknown) return;  // it has a column
      properties.Add(song);
      AddProperty(properties, key, text, type);
    });
    const std::int32_t count = library_.getSongCount(all);
    Progress progress(static_cast<std::size_t>(count), session_.terminal, session_.output,
                      session_.options.quiet);
    for (std::int32_t i = 0; i < count; ++i) {
      if (i % kSongsBetweenLooks == 0) RequireNoEndingSignal();
      song = i;
      const SongRecord& record = reader.Read(all, i);
      AddTrack(tracks, i, record);
      counts_.tally.Add(record);
      progress.Step();
    }
    tracks.Finish();
    properties.Finish();
    counts_.tracks = count;
  }

  static void AddTrack(SqliteInsertion& tracks, std::int64_t number, const SongRecord& song) {
    tracks.Add(number);
    for (std::size_t i = 0; i < kFieldCount; ++i) {
      const auto field = static_cast<Field>(i);
      switch (FactsOf(field).type) {
        case FieldType::Number:
          tracks.Add(song.Number(field));
          break;
        case FieldType::Flag:
          tracks.Add(std::int64_t{song.Is(field)});
          break;
        case FieldType::Seconds:
          if (song.Text(field)) {
            tracks.AddReal(static_cast<double>(song.Milliseconds()) / 1000);
          } else {
            tracks.AddNull();
          }
          break;
        case FieldType::Text:
        case FieldType::Date:
          tracks.Add(song.Text(field));
          break;
      }
    }
    tracks.EndRow();
  }

  void WritePlaylists() {
    const std::vector<Playlist> playlists = ReadPlaylists(library_);
    SqliteInsertion rows(database_, "playlists", 5);
    for (const TreeEntry& entry : MakeTree(playlists)) {
      const Playlist& playlist = playlists[entry.playlist];
      if (!playlist.isInFile) continue;
      rows.Add(static_cast<std::int64_t>(entry.playlist));
      rows.Add(playlist.id.empty() ? std::nullopt : std::optional<std::string_view>(playlist.id));
      rows.Add(playlist.name ? std::optional<std::string_view>(*playlist.name) : std::nullopt);
      rows.Add(TypeName(playlist.type));
      rows.Add(entry.parent == kNoParent ? std::nullopt
                                         : std::optional(static_cast<std::int64_t>(entry.parent)));
      rows.EndRow();
      ++counts_.playlists;
    }
    rows.Finish();
    WriteItems(playlists);
  }

  void WriteItems(const std::vector<Playlist>& playlists) {
    const SongNumbers numbers(library_);
    SqliteInsertion items(database_, "items", 3);
    for (std::size_t list = 0; list < playlists.size(); ++list) {
      if (!playlists[list].isInFile) continue;
      RequireNoEndingSignal();
      for (std::int32_t i = 0; i < playlists[list].songCount; ++i) {
        const std::int32_t song = numbers.Of(playlists[list].handle, i);
        if (song < 0) continue;
        items.Add(static_cast<std::int64_t>(list));
        items.Add(std::int64_t{i});
        items.Add(std::int64_t{song});
        items.EndRow();
        ++counts_.items;
      }
    }
    items.Finish();
  }

  Sqlite& database_;
  Session& session_;
  const LibraryFunctions& library_;
  DatabaseCounts counts_;
};

}  // namespace

DatabaseCounts WriteDatabase(const std::string& path, const std::string& name, Session& session) {
  Sqlite database(path, name);
  DatabaseCounts counts = DatabaseWriter(database, session).Write();
  database.Close();
  return counts;
}

DatabaseCounts CountForDatabase(const Session& session) {
  DatabaseCounts counts;
  counts.tracks = session.library.getSongCount(session.library.openAllSongs());
  for (const Playlist& playlist : ReadPlaylists(session.library)) {
    if (!playlist.isInFile) continue;
    ++counts.playlists;
    counts.items += playlist.songCount;
  }
  return counts;
}

}  // namespace tavrel::host
