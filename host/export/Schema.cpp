#include "host/export/Schema.h"

#include <string_view>

#include "host/library/Fields.h"

namespace tavrel::host {
namespace {

std::string_view TypeOf(FieldType type) {
  switch (type) {
    case FieldType::Number:
    case FieldType::Flag:
      return "INTEGER";
    case FieldType::Seconds:
      return "REAL";
    case FieldType::Text:
    case FieldType::Date:
      break;
  }
  return "TEXT";
}

constexpr std::string_view kOtherTables = R"(CREATE TABLE properties (
  song INTEGER NOT NULL REFERENCES tracks,
  key TEXT NOT NULL,
  type TEXT NOT NULL,
  value,
  PRIMARY KEY (song, key)
) WITHOUT ROWID;
CREATE TABLE playlists (
  list INTEGER PRIMARY KEY,
  id TEXT,
  name TEXT,
  type TEXT NOT NULL,
  parent INTEGER REFERENCES playlists
);
CREATE TABLE items (
  list INTEGER NOT NULL REFERENCES playlists,
  position INTEGER NOT NULL,
  song INTEGER NOT NULL REFERENCES tracks,
  PRIMARY KEY (list, position)
) WITHOUT ROWID;
CREATE TABLE library (
  key TEXT PRIMARY KEY,
  type TEXT NOT NULL,
  value
) WITHOUT ROWID;
)";

constexpr std::string_view kIndexes = R"(CREATE INDEX tracksById ON tracks (id);
CREATE INDEX tracksByArtist ON tracks (artist);
CREATE INDEX tracksByAlbum ON tracks (album);
CREATE INDEX playlistsByName ON playlists (name);
CREATE INDEX itemsBySong ON items (song);
CREATE VIEW listSongs AS
  SELECT items.list, playlists.name AS listName, items.position, tracks.*
  FROM items JOIN playlists USING (list) JOIN tracks USING (song)
  ORDER BY items.list, items.position;
CREATE VIEW albums AS
  SELECT album,
    CASE WHEN compilation THEN coalesce(albumArtist, 'Various Artists')
         ELSE coalesce(albumArtist, artist) END AS albumArtist,
    count(*) AS songs, total(seconds) AS seconds, coalesce(sum(plays), 0) AS plays,
    min(year) AS year, min(added) AS added, avg(rating) AS rating
  FROM tracks WHERE album IS NOT NULL GROUP BY 1, 2;
)";

}  // namespace

std::string TablesOfDatabase() {
  std::string tables = "CREATE TABLE tracks (\n  song INTEGER PRIMARY KEY";
  for (const FieldFacts& field : kFields) {
    tables.append(",\n  ").append(field.name).append(" ").append(TypeOf(field.type));
    if (field.type == FieldType::Flag) tables += " NOT NULL";
  }
  return tables.append("\n);\n").append(kOtherTables);
}

std::string IndexesOfDatabase() {
  return std::string(kIndexes);
}

}  // namespace tavrel::host
