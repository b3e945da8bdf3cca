#include "host/commands/SongList.h"

#include <algorithm>
#include <numeric>

#include "host/commands/SongOrder.h"
#include "host/library/FileTally.h"
#include "host/output/Csv.h"
#include "host/output/Failure.h"
#include "host/output/Json.h"

namespace tavrel::host {
namespace {

// The path of what is not in the file, a ringtone, is the one that the user knows.
FieldValue ToldValue(const SongRecord& song, Field field, const Session& session,
                     std::string& room) {
  const FieldValue value = song.Value(field);
  if (field != Field::Path || !song.IsOutsideTheFile() || !value.text) return value;
  room = UserPath(session, *value.text);
  return {room, true};
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) {
    if (!joined.empty()) joined += ", ";
    joined += text;
  }
  return joined;
}

SongColumns ColumnsFor(const SongList& list, const SongListOptions& options, ListFormat format,
                       const Session& session) {
  SongColumns columns;
  if (options.fields) {
    bool isAll = false;
    columns.fields = ParseFields(*options.fields, &isAll);
    if (isAll) columns.SetKeys(CollectOtherKeys(session.library, list.playlist));
  } else {
    columns.fields = format == ListFormat::Table ? list.tableFields : AllFields();
  }
  return columns;
}

// ---- The formats --------------------------------------------------------------------------------

std::vector<Column> TableColumns(const SongList& list, const SongColumns& columns) {
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
  for (const std::string& name : columns.keyNames) {
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
  if (list.listsOf) rows.Add(Joined(list.listsOf(position)));
}

void PrintTable(const SongList& list, const SongColumns& columns, Session& session) {
  if (list.positions.empty()) return;
  const Table table(TableColumns(list, columns), [&](Rows& rows) {
    SongRecordReader reader(session.library, columns.Wanted(), &columns.keys);
    for (const std::int32_t position : list.positions) {
      AddRow(list, columns, reader.Read(list.playlist, position), position, session, rows);
    }
  });
  table.Print(session.terminal, session.output);
}

void PrintJson(const SongList& list, const SongColumns& columns, bool asLines,
               const Session& session, Sink& output) {
  SongRecordReader reader(session.library, columns.Wanted(), &columns.keys);
  const SongJson songs(columns, session);
  std::optional<JsonList> array;
  if (!asLines) array.emplace(output);
  std::string json;
  for (const std::int32_t position : list.positions) {
    json.clear();
    songs.AppendOpen(json, reader.Read(list.playlist, position));
    if (list.listsOf) {
      JsonArray lists;
      for (const std::string& name : list.listsOf(position)) lists.Add(name);
      json += ",\"lists\":" + lists.Text();
    }
    json += '}';
    if (array) {
      array->AddText(json);
    } else {
      output.WriteLine(json);
    }
  }
  if (array) array->End();
}

void PrintCsv(const SongList& list, const SongColumns& columns, Separation separation,
              bool forSpreadsheet, const Session& session, Sink& output) {
  CsvWriter writer(output, separation, forSpreadsheet);
  for (const Field field : columns.fields) writer.Add(FactsOf(field).name);
  for (const std::string& name : columns.keyNames) writer.Add(name);
  if (list.listsOf) writer.Add("lists");
  writer.EndRow();

  SongRecordReader reader(session.library, columns.Wanted(), &columns.keys);
  std::string room;
  const auto add = [&writer](const FieldValue& value) {
    const std::string_view cell = value.text.value_or("");
    value.text&& value.isText ? writer.Add(cell) : writer.AddPlain(cell);
  };
  for (const std::int32_t position : list.positions) {
    const SongRecord& song = reader.Read(list.playlist, position);
    for (const Field field : columns.fields) {
      add(field == Field::Path ? ToldValue(song, field, session, room) : song.Value(field));
    }
    for (std::size_t key = 0; key < columns.keys.All().size(); ++key) add(song.Other(key));
    if (list.listsOf) writer.Add(Joined(list.listsOf(position)));
    writer.EndRow();
  }
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
  if (const std::string line = tally.Line(); !line.empty()) Complain(line);
}

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

// ---- JSON ---------------------------------------------------------------------------------------

SongJson::SongJson(const SongColumns& columns, const Session& session)
    : columns_(columns), session_(session) {
  const auto add = [this](std::string_view name) {
    std::string& quoted = names_.emplace_back();
    AppendJsonText(quoted, name);
    quoted += ':';
  };
  for (const Field field : columns.fields) add(FactsOf(field).name);
  for (const std::string& name : columns.keyNames) add(name);
}

void SongJson::AppendOpen(std::string& json, const SongRecord& song) const {
  json += '{';
  std::string room;
  for (std::size_t i = 0; i < names_.size(); ++i) {
    const bool isField = i < columns_.fields.size();
    const FieldValue value = isField ? ToldValue(song, columns_.fields[i], session_, room)
                                     : song.Other(i - columns_.fields.size());
    if (i > 0) json += ',';
    json += names_[i];
    if (!value.text) {
      json += "null";
    } else if (value.isText) {
      AppendJsonText(json, *value.text);
    } else {
      json += *value.text;
    }
  }
}

std::vector<std::int32_t> AllPositions(const LibraryFunctions& library, PlaylistRecord* playlist) {
  std::vector<std::int32_t> positions(static_cast<std::size_t>(library.getSongCount(playlist)));
  std::iota(positions.begin(), positions.end(), 0);
  return positions;
}

void WriteSongs(PlaylistRecord* playlist, SongFileFormat format, const Session& session,
                Sink& output) {
  SongList list;
  list.playlist = playlist;
  list.positions = AllPositions(session.library, playlist);
  SongColumns columns;
  columns.fields = AllFields();
  if (format == SongFileFormat::Json) return PrintJson(list, columns, false, session, output);
  PrintCsv(list, columns, Separation::Commas, false, session, output);
}

void PrintSongs(SongList& list, const SongListOptions& options, Session& session) {
  const ListFormat format = FormatOf(options.format, session.options);
  const SongColumns columns = ColumnsFor(list, options, format, session);
  if (options.sort) {
    SortSongs(session.library, list.playlist, ParseFields(*options.sort), options.isReversed,
              list.positions);
  } else if (options.isReversed) {
    std::reverse(list.positions.begin(), list.positions.end());
  }
  if (list.limit != 0 && list.positions.size() > list.limit) list.positions.resize(list.limit);
  SayWhatWasFound(list, options, session);
  switch (format) {
    case ListFormat::Table:
      return PrintTable(list, columns, session);
    case ListFormat::Json:
    case ListFormat::JsonLines:
      return PrintJson(list, columns, format == ListFormat::JsonLines, session, session.output);
    case ListFormat::Csv:
    case ListFormat::Tsv:
      return PrintCsv(list, columns, SeparationOf(format), options.format.forSpreadsheet, session,
                      session.output);
  }
}

}  // namespace tavrel::host
