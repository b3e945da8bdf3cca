#include "host/commands/SongJson.h"

#include <deque>

#include "host/output/Json.h"

namespace tavrel::host {

FieldValue ToldValue(const SongRecord& song, Field field, const Session& session,
                     std::string& room) {
  const FieldValue value = song.Value(field);
  if (field != Field::Path || !song.IsOutsideTheFile() || !value.text) return value;
  room = UserPath(session, *value.text);
  return {room, true};
}

SongJson::SongJson(const SongColumns& columns, const Session& session)
    : columns_(columns), session_(session) {
  for (const Field field : columns.fields) AddName(FactsOf(field).name);
  AddNamesOfKeys();
}

void SongJson::AddName(std::string_view name) {
  std::string& quoted = names_.emplace_back();
  AppendJsonText(quoted, name);
  quoted += ':';
}

void SongJson::AddNamesOfKeys() {
  const std::deque<std::string>& keys = columns_.keys.All();
  while (names_.size() < columns_.fields.size() + keys.size()) {
    AddName(NameOfKey(keys[names_.size() - columns_.fields.size()]));
  }
}

void SongJson::AppendOpen(std::string& json, const SongRecord& song) {
  AddNamesOfKeys();
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

void SongJson::AppendLacking(std::string& json, std::size_t keys) {
  AddNamesOfKeys();
  for (std::size_t i = columns_.fields.size() + keys; i < names_.size(); ++i) {
    json.append(1, ',').append(names_[i]).append("null");
  }
}

}  // namespace tavrel::host
