// The tables of a library's database.
#pragma once

#include <string>

namespace tavrel::host {

// The tables, for an empty database. Those of songs have a column for each field of a song.
[[nodiscard]] std::string TablesOfDatabase();

// What is made once they are filled: indexes and views.
[[nodiscard]] std::string IndexesOfDatabase();

}  // namespace tavrel::host
