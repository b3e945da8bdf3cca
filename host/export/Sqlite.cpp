#include "host/export/Sqlite.h"

#include <sqlite3.h>

#include <new>

#include "host/output/Failure.h"
#include "host/output/Text.h"
#include "text/Utf8.h"

namespace tavrel::host {
namespace {

std::string WithReplacements(std::string_view text) {
  std::string valid;
  while (!text.empty()) {
    const Character first = FirstCharacter(text);
    valid += first.code < 0 ? kReplacementCharacter : text.substr(0, first.length);
    text.remove_prefix(first.length);
  }
  return valid;
}

}  // namespace

Sqlite::Sqlite(const std::string& path, const std::string& name) : name_(name) {
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_PRIVATECACHE;
  const int result = sqlite3_open_v2(path.c_str(), &database_, flags, nullptr);
  if (database_ == nullptr) throw std::bad_alloc();
  if (result == SQLITE_OK) return;
  const std::string reason = sqlite3_errmsg(database_);
  sqlite3_close(database_);
  throw Failure(ExitCode::Failed, "cannot write " + name_ + ": " + reason);
}

Sqlite::~Sqlite() {
  sqlite3_close_v2(database_);
}

void Sqlite::Fail() const {
  throw Failure(ExitCode::Failed, "cannot write " + name_ + ": " + sqlite3_errmsg(database_));
}

void Sqlite::Require(int result) const {
  if (result == SQLITE_NOMEM) throw std::bad_alloc();
  if (result != SQLITE_OK) Fail();
}

void Sqlite::Run(const std::string& statements) {
  Require(sqlite3_exec(database_, statements.c_str(), nullptr, nullptr, nullptr));
}

void Sqlite::Close() {
  Require(sqlite3_close(database_));
  database_ = nullptr;
}

SqliteInsertion::SqliteInsertion(Sqlite& database, const std::string& table, int columns)
    : database_(database) {
  std::string statement = "INSERT OR IGNORE INTO " + table + " VALUES (?";
  for (int i = 1; i < columns; ++i) statement += ", ?";
  statement += ')';
  database_.Require(
      sqlite3_prepare_v2(database_.database_, statement.c_str(), -1, &statement_, nullptr));
}

SqliteInsertion::~SqliteInsertion() {
  sqlite3_finalize(statement_);
}

void SqliteInsertion::Add(std::string_view text) {
  const std::string replaced = text::IsValidUtf8(text) ? std::string() : WithReplacements(text);
  const bool isReplaced = !replaced.empty();
  const std::string_view used = isReplaced ? replaced : text;
  database_.Require(sqlite3_bind_text64(statement_, ++column_, used.data(), used.size(),
                                        isReplaced ? SQLITE_TRANSIENT : SQLITE_STATIC,
                                        SQLITE_UTF8));
}

void SqliteInsertion::Add(std::int64_t number) {
  database_.Require(sqlite3_bind_int64(statement_, ++column_, number));
}

void SqliteInsertion::AddReal(double number) {
  database_.Require(sqlite3_bind_double(statement_, ++column_, number));
}

void SqliteInsertion::AddNull() {
  database_.Require(sqlite3_bind_null(statement_, ++column_));
}

void SqliteInsertion::Add(const std::optional<std::string_view>& text) {
  if (text) return Add(*text);
  AddNull();
}

void SqliteInsertion::Add(const std::optional<std::int64_t>& number) {
  if (number) return Add(*number);
  AddNull();
}

void SqliteInsertion::InsertRow() {
  const int result = sqlite3_step(statement_);
  if (result == SQLITE_NOMEM) throw std::bad_alloc();
  if (result != SQLITE_DONE) database_.Fail();
  database_.Require(sqlite3_reset(statement_));
  column_ = 0;
}

}  // namespace tavrel::host
