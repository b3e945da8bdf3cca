// A new SQLite database, and statements that fill it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace tavrel::host {

// A database in an empty file, which is thrown away when anything goes wrong: nothing is written twice so that
// it could be taken back. All errors are Failures.
class Sqlite {
 public:
  // path: of the file. name: what messages call it; borrowed.
  Sqlite(const std::string& path, const std::string& name);
  Sqlite(const Sqlite&) = delete;
  Sqlite& operator=(const Sqlite&) = delete;
  ~Sqlite();

  // Runs statements that give nothing back.
  void Run(const std::string& statements);

  // Writes all that waits to be written. Once, with no statement left.
  void Close();

 private:
  friend class SqliteInsertion;

  [[noreturn]] void Fail() const;
  void Require(int result) const;

  const std::string& name_;
  sqlite3* database_ = nullptr;
};

// Inserts rows, value by value. Texts are borrowed until the row is inserted.
class SqliteInsertion {
 public:
  // INSERT INTO table VALUES (?, ... ); a row whose key is there already is left out.
  SqliteInsertion(Sqlite& database, const std::string& table, int columns);
  SqliteInsertion(const SqliteInsertion&) = delete;
  SqliteInsertion& operator=(const SqliteInsertion&) = delete;
  ~SqliteInsertion();

  // The next value of the row. A text that is not UTF-8 has U+FFFD for each of its wrong bytes.
  void Add(std::string_view text);
  void Add(std::int64_t number);
  void AddReal(double number);
  void AddNull();
  void Add(const std::optional<std::string_view>& text);
  void Add(const std::optional<std::int64_t>& number);

  void InsertRow();

 private:
  Sqlite& database_;
  sqlite3_stmt* statement_ = nullptr;
  int column_ = 0;
};

}  // namespace tavrel::host
