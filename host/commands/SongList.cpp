#include "host/commands/SongList.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "host/commands/SongJson.h"
#include "host/commands/SongOrder.h"
#include "host/commands/SongRows.h"
#include "host/library/FileTally.h"
#include "host/output/Failure.h"

namespace tavrel::host {
namespace {

SongColumns ColumnsFor(const SongList& list, const SongListOptions& options, ListFormat format) {
  SongColumns columns;
  if (options.fields) {
    columns.fields = ParseFields(*options.fields, &columns.withAllKeys);
  } else {
    columns.fields = format == ListFormat::Table ? list.tableFields : AllFields();
  }
  return columns;
}

// ---- Tables -------------------------------------------------------------------------------------

// keyNames: borrowed by the columns.
std::vector<Column> TableColumns(const SongList& list, const SongColumns& columns,
                                 const std::vector<std::string>& keyNames) {
  std::vector<Column> shown;
  if (list.withPositions)
    shown.push_back({.title = "#", .align = Align::Right, .style = Style::Dim});
  int rank = 0;  // the first stays, the last goes first
  for (const Field field : columns.fields) {
    shown.push_back(ColumnOf(field));
    shown.back().rank = rank++;
    if (list.marks.contains(field))
      shown.back().cut = Cut::End;  // marks are found at the start only
  }
  for (const std::string& name : keyNames) {
    shown.push_back({.title = name, .weight = 1, .rank = rank++});
  }
  if (list.listsOf)
    shown.push_back({.title = "Lists", .style = Style::Dim, .weight = 2, .rank = rank});
  return shown;
}

void AddRow(const SongList& list, const SongColumns& columns, const SongRecord& song,
            std::int32_t position, const Session& session, Rows& rows) {
  if (list.withPositions) rows.Add(position);
  std::string room;
  for (const Field field : columns.fields) {
    const auto mark = list.marks.find(field);
    if (mark != list.marks.end()) {
      rows.AddMarked(song.Text(field).value_or(""), mark->second);
    } else if (field == Field::Path) {
      rows.Add(ToldValue(song, field, session, room).text.value_or(""));
    } else {
      rows.Add(ShownValue(song, field));
    }
  }
  for (std::size_t key = 0; key < columns.keys.All().size(); ++key) {
    rows.Add(song.Other(key).text.value_or(""));
  }
  if (list.listsOf) rows.Add(JoinedNames(list.listsOf(position)));
}

void PrintTable(const SongList& list, SongColumns& columns, Session& session) {
  if (list.positions.empty()) return;
  if (columns.withAllKeys) CollectOtherKeys(session.library, list.playlist, 0, columns.keys);
  std::vector<std::string> keyNames;
  for (const std::string& key : columns.keys.All()) keyNames.push_back(NameOfKey(key));
  const Table table(TableColumns(list, columns, keyNames), [&](Rows& rows) {
    SongRecordReader reader(session.library, columns.Wanted(), &columns.keys);
    for (const std::int32_t position : list.positions) {
      AddRow(list, columns, reader.Read(list.playlist, position), position, session, rows);
    }
  });
  table.Print(session.terminal, session.output);
}

// Says what was found where the user asks for files.
void SayWhatWasFound(const SongList& list, const SongListOptions& options, const Session& session) {
  if (!options.fields || session.options.quiet) return;
  bool isAll = false;
  const std::vector<Field> fields = ParseFields(*options.fields, &isAll);
  const bool isAsked = std::any_of(fields.begin(), fields.end(), [](Field field) {
    return field == Field::Path || field == Field::Status;
  });
  if (isAll || !isAsked) return;
  FileTally tally;
  SongRecordReader reader(session.library, SetOf({Field::Path, Field::Status}));
  for (const std::int32_t position : list.positions) {
    tally.Add(reader.Read(list.playlist, position));
  }
  TellWhatWasFound(tally, session);
}

// Rows of a whole playlist that somebody else hears of, too.
class HeardRows : public SongRows {
 public:
  HeardRows(SongRows& rows, OnSong onSong) : rows_(rows), onSong_(std::move(onSong)) {}

  std::string_view Begun(const SongRecord& song) override {
    onSong_(next_++, song);
    return rows_.Begun(song);
  }
  void WriteHead() override { rows_.WriteHead(); }
  void Write(std::string_view begun, std::size_t keys, std::int32_t position) override {
    rows_.Write(begun, keys, position);
  }
  void WriteEnd() override { rows_.WriteEnd(); }

 private:
  SongRows& rows_;
  OnSong onSong_;
  std::int32_t next_ = 0;
};

}  // namespace

void AddSongListOptions(CommandDefinition command, SongListOptions& list) {
  std::vector<std::string> names;
  for (const FieldFacts& field : kFields) names.emplace_back(field.name);
  std::vector<std::string> shown = names;
  shown.emplace_back("all");
  command.AddParted("--fields", list.fields, shown, "A,B",
                    "What to show of each song, parted by commas: name,artist,year;\n"
                    "all: everything that the file says");
  command.AddParted("--sort", list.sort, names, "FIELD[,FIELD]",
                    "Sort by these fields, the first one first");
  command.AddFlag("--reverse", list.isReversed, "The other way round");
  AddFormatOptions(command, list.format, JsonLines::Offered);
}

std::vector<std::int32_t> AllPositions(const LibraryFunctions& library, PlaylistRecord* playlist) {
  std::vector<std::int32_t> positions(static_cast<std::size_t>(library.getSongCount(playlist)));
  std::iota(positions.begin(), positions.end(), 0);
  return positions;
}

void WriteSongs(PlaylistRecord* playlist, SongFileFormat format, const Session& session,
                Sink& output, OnSong onSong) {
  SongColumns columns{.fields = AllFields()};
  const ListFormat wanted = format == SongFileFormat::Json ? ListFormat::Json : ListFormat::Csv;
  const auto rows = MakeSongRows(columns, nullptr, wanted, false, session, output);
  HeardRows heard(*rows, std::move(onSong));
  WriteSongRows(session.library, playlist, AllPositions(session.library, playlist), columns, heard);
}

void PrintSongs(SongList& list, const SongListOptions& options, Session& session) {
  const ListFormat format = FormatOf(options.format, session.options);
  SongColumns columns = ColumnsFor(list, options, format);
  if (options.sort) {
    SortSongs(session.library, list.playlist, ParseFields(*options.sort), options.isReversed,
              list.positions);
  } else if (options.isReversed) {
    std::reverse(list.positions.begin(), list.positions.end());
  }
  if (list.limit != 0 && list.positions.size() > list.limit) list.positions.resize(list.limit);
  SayWhatWasFound(list, options, session);
  if (format == ListFormat::Table) return PrintTable(list, columns, session);
  const auto rows = MakeSongRows(columns, list.listsOf, format, options.format.forSpreadsheet,
                                 session, session.output);
  WriteSongRows(session.library, list.playlist, list.positions, columns, *rows);
}

}  // namespace tavrel::host
