// What SQLite itself takes to write a database.
#pragma once

#include <string>

namespace tavrel::bench {

// Writes a database with the tables, rows, indexes and views of another into a new file, in one transaction: row
// by row, since as pages it would be no more than a copy. Throws std::runtime_error.
void RewriteDatabase(const std::string& from, const std::string& to);

}  // namespace tavrel::bench
