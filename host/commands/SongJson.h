// A song as JSON has it everywhere.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/commands/SongColumns.h"
#include "host/library/Session.h"

namespace tavrel::host {

// What lists tell of a field: the path of what is not in the file, a ringtone, is the one that the user knows.
// room: for the text, borrowed as long as the result.
[[nodiscard]] FieldValue ToldValue(const SongRecord& song, Field field, const Session& session,
                                   std::string& room);

class SongJson {
 public:
  // The columns are borrowed; keys may be added to them.
  SongJson(const SongColumns& columns, const Session& session);

  // Appends the object behind what `json` holds, but for its closing brace.
  void AppendOpen(std::string& json, const SongRecord& song);
  // Behind a song of which only the first `keys` keys were written: the others, none of which it has.
  void AppendLacking(std::string& json, std::size_t keys);

 private:
  void AddName(std::string_view name);
  void AddNamesOfKeys();

  const SongColumns& columns_;
  const Session& session_;
  std::vector<std::string> names_;  // quoted, with their colons
};

}  // namespace tavrel::host
