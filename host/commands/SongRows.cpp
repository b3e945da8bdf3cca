#include "host/commands/SongRows.h"

#include <algorithm>
#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/commands/SongJson.h"
#include "host/output/Csv.h"
#include "host/output/HeldRows.h"
#include "host/output/Json.h"

namespace tavrel::host {
namespace {

// ---- The formats --------------------------------------------------------------------------------

class JsonRows final : public SongRows {
 public:
  JsonRows(const SongColumns& columns, ListsOfSong lists, bool asLines, const Session& session,
           Sink& output)
      : lists_(std::move(lists)), songs_(columns, session), output_(output) {
    if (!asLines) array_.emplace(output);
  }

  std::string_view Begun(const SongRecord& song) override {
    begun_.clear();
    songs_.AppendOpen(begun_, song);
    return begun_;
  }

  void WriteHead() override {}

  void Write(std::string_view begun, std::size_t keys, std::int32_t position) override {
    json_ = begun;
    songs_.AppendLacking(json_, keys);
    if (lists_) {
      JsonArray lists;
      for (const std::string& name : lists_(position)) lists.Add(name);
      json_ += ",\"lists\":" + lists.Text();
    }
    json_ += '}';
    if (array_) {
      array_->AddText(json_);
    } else {
      output_.WriteLine(json_);
    }
  }

  void WriteEnd() override {
    if (array_) array_->End();
  }

 private:
  ListsOfSong lists_;
  SongJson songs_;
  Sink& output_;
  std::optional<JsonList> array_;
  std::string begun_;
  std::string json_;
};

class CsvRows final : public SongRows {
 public:
  CsvRows(const SongColumns& columns, ListsOfSong lists, ListFormat format, bool forSpreadsheet,
          const Session& session, Sink& output)
      : lists_(std::move(lists)),
        columns_(columns),
        session_(session),
        writer_(output, SeparationOf(format), forSpreadsheet) {}

  std::string_view Begun(const SongRecord& song) override {
    writer_.DropRow();
    for (const Field field : columns_.fields) {
      if (field == Field::Path) {
        Add(ToldValue(song, field, session_, room_), false);
      } else {
        Add(song.Value(field), FactsOf(field).type == FieldType::Date);
      }
    }
    const std::size_t keys = columns_.keys.All().size();
    for (std::size_t key = 0; key < keys; ++key) Add(song.Other(key), false);
    return writer_.Row();
  }

  void WriteHead() override {
    writer_.DropRow();
    for (const Field field : columns_.fields) writer_.Add(FactsOf(field).name);
    for (const std::string& key : columns_.keys.All()) writer_.Add(NameOfKey(key));
    if (lists_) writer_.Add("lists");
    writer_.EndRow();
  }

  void Write(std::string_view begun, std::size_t keys, std::int32_t position) override {
    writer_.SetRow(begun, columns_.fields.size() + keys);
    for (; keys < columns_.keys.All().size(); ++keys) writer_.AddPlain("");
    if (lists_) writer_.Add(JoinedNames(lists_(position)));
    writer_.EndRow();
  }

  void WriteEnd() override {}

 private:
  // Dates are texts in JSON, but need no quotes here.
  void Add(const FieldValue& value, bool isDate) {
    const std::string_view cell = value.text.value_or("");
    value.text&& value.isText && !isDate ? writer_.Add(cell) : writer_.AddPlain(cell);
  }

  ListsOfSong lists_;
  const SongColumns& columns_;
  const Session& session_;
  CsvWriter writer_;
  std::string room_;
};

bool IsWholeInOrder(const std::vector<std::int32_t>& positions, std::int32_t songs) {
  if (positions.size() != static_cast<std::size_t>(songs)) return false;
  std::int32_t next = 0;
  return std::all_of(positions.begin(), positions.end(),
                     [&next](std::int32_t position) { return position == next++; });
}

}  // namespace

std::string JoinedNames(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) {
    if (!joined.empty()) joined += ", ";
    joined += text;
  }
  return joined;
}

std::unique_ptr<SongRows> MakeSongRows(const SongColumns& columns, ListsOfSong lists,
                                       ListFormat format, bool forSpreadsheet,
                                       const Session& session, Sink& output) {
  if (format == ListFormat::Json || format == ListFormat::JsonLines) {
    return std::make_unique<JsonRows>(columns, std::move(lists), format == ListFormat::JsonLines,
                                      session, output);
  }
  return std::make_unique<CsvRows>(columns, std::move(lists), format, forSpreadsheet, session,
                                   output);
}

void WriteSongRows(const LibraryFunctions& library, PlaylistRecord* playlist,
                   const std::vector<std::int32_t>& positions, SongColumns& columns, SongRows& rows,
                   std::size_t mostHeld) {
  SongRecordReader reader(library, columns.Wanted());
  const std::deque<std::string>& keys = columns.keys.All();
  HeldRows held;
  if (columns.withAllKeys) {
    reader.ReadAllKeys(columns.keys);
    const bool isWhole = IsWholeInOrder(positions, library.getSongCount(playlist));
    std::size_t read = 0;
    for (; isWhole && read < positions.size() && held.Size() < mostHeld; ++read) {
      const std::string_view begun = rows.Begun(reader.Read(playlist, positions[read]));
      held.Add(begun, keys.size());
    }
    CollectOtherKeys(library, playlist, static_cast<std::int32_t>(read), columns.keys);
  }
  rows.WriteHead();
  std::size_t next = 0;
  for (const HeldRows::Row& row : held.All()) rows.Write(row.text, row.columns, positions[next++]);
  for (; next < positions.size(); ++next) {
    const std::string_view begun = rows.Begun(reader.Read(playlist, positions[next]));
    rows.Write(begun, keys.size(), positions[next]);
  }
  rows.WriteEnd();
}

}  // namespace tavrel::host
