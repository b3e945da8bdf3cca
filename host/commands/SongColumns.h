// Which columns a list of songs shows, and what stands in them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/SongRecord.h"
#include "host/output/Table.h"

namespace tavrel::host {

// The columns of a list: fields, and behind them other keys of the file.
struct SongColumns {
  std::vector<Field> fields;
  bool withAllKeys = false;  // whether all are wanted that the songs have
  OtherKeys keys = {};       // as far as they are known

  [[nodiscard]] FieldSet Wanted() const;
};

// The fields that a text names, parted by commas; "all" is every field, and sets `isAll`. An unknown name
// is a Failure that says which come near.
[[nodiscard]] std::vector<Field> ParseFields(std::string_view text, bool* isAll = nullptr);

[[nodiscard]] std::vector<Field> AllFields();

// What a key of the file is called beside the fields: by its own name, with "key:" before it where that is one
// of our names, or begins so itself. No two keys get one name, and none gets one of ours.
[[nodiscard]] std::string NameOfKey(std::string_view key);

// How a table shows a value: times as "4:05", dates without their seconds, flags as "yes".
[[nodiscard]] std::string ShownValue(const SongRecord& song, Field field);

[[nodiscard]] Column ColumnOf(Field field);

}  // namespace tavrel::host
