// A new SQLite database, and statements that fill it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

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

// Inserts rows, value by value, many with each call of SQLite's: a call takes as long as two rows.
class SqliteInsertion {
 public:
  // INSERT INTO table VALUES (?, ... ); a row whose key is there already is left out. database: borrowed.
  SqliteInsertion(Sqlite& database, std::string table, std::size_t columns);

  // The next value of the row. A text that is not UTF-8 has U+FFFD for each of its wrong bytes.
  void Add(std::string_view text);
  void Add(std::int64_t number);
  void AddReal(double number);
  void AddNull();
  void Add(const std::optional<std::string_view>& text);
  void Add(const std::optional<std::int64_t>& number);

  void EndRow();

  // Behind the last row: inserts those that wait.
  void Finish();

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const noexcept;
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

  // A text, by its place in the texts.
  struct Text {
    std::size_t from;
    std::size_t size;
  };
  using Value = std::variant<std::monostate, std::int64_t, double, Text>;

  [[nodiscard]] Statement Prepare(std::size_t rows) const;
  void Insert(sqlite3_stmt& statement);
  void Bind(sqlite3_stmt& statement, int place, const Value& value) const;

  Sqlite& database_;
  std::string table_;
  std::size_t columns_;
  Statement many_;
  std::vector<Value> values_;  // of the rows that wait
  std::string texts_;
};

}  // namespace tavrel::host
