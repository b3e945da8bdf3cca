#include "host/export/Sqlite.h"

#include <sqlite3.h>

#include <new>
#include <utility>

#include "host/output/Failure.h"
#include "host/output/Text.h"
#include "text/Utf8.h"

namespace tavrel::host {
namespace {

// Places for values are at least 999, whatever SQLite it is: as many rows of the widest table have theirs.
constexpr std::size_t kRowsAtOnce = 16;
constexpr std::size_t kMostTexts = std::size_t{1} << 20;  // bytes that wait

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

// ---- Rows ---------------------------------------------------------------------------------------

void SqliteInsertion::Finalize::operator()(sqlite3_stmt* statement) const noexcept {
  sqlite3_finalize(statement);
}

SqliteInsertion::SqliteInsertion(Sqlite& database, std::string table, std::size_t columns)
    : database_(database),
      table_(std::move(table)),
      columns_(columns),
      many_(Prepare(kRowsAtOnce)) {}

SqliteInsertion::Statement SqliteInsertion::Prepare(std::size_t rows) const {
  std::string row = "(?";
  for (std::size_t i = 1; i < columns_; ++i) row += ", ?";
  row += ')';
  std::string text = "INSERT OR IGNORE INTO " + table_ + " VALUES " + row;
  for (std::size_t i = 1; i < rows; ++i) text.append(", ").append(row);
  sqlite3_stmt* statement = nullptr;
  database_.Require(sqlite3_prepare_v2(database_.database_, text.c_str(), -1, &statement, nullptr));
  return Statement(statement);
}

void SqliteInsertion::Add(std::string_view text) {
  const std::size_t from = texts_.size();
  if (text::IsValidUtf8(text)) {
    texts_ += text;
  } else {
    texts_ += WithReplacements(text);
  }
  values_.emplace_back(Text{from, texts_.size() - from});
}

void SqliteInsertion::Add(std::int64_t number) {
  values_.emplace_back(number);
}

void SqliteInsertion::AddReal(double number) {
  values_.emplace_back(number);
}

void SqliteInsertion::AddNull() {
  values_.emplace_back();
}

void SqliteInsertion::Add(const std::optional<std::string_view>& text) {
  if (text) return Add(*text);
  AddNull();
}

void SqliteInsertion::Add(const std::optional<std::int64_t>& number) {
  if (number) return Add(*number);
  AddNull();
}

void SqliteInsertion::EndRow() {
  if (values_.size() == kRowsAtOnce * columns_) {
    Insert(*many_);
  } else if (texts_.size() > kMostTexts) {
    Finish();
  }
}

void SqliteInsertion::Finish() {
  if (values_.empty()) return;
  const Statement rest = Prepare(values_.size() / columns_);
  Insert(*rest);
}

void SqliteInsertion::Bind(sqlite3_stmt& statement, int place, const Value& value) const {
  int result = SQLITE_OK;
  if (const auto* number = std::get_if<std::int64_t>(&value)) {
    result = sqlite3_bind_int64(&statement, place, *number);
  } else if (const auto* real = std::get_if<double>(&value)) {
    result = sqlite3_bind_double(&statement, place, *real);
  } else if (const auto* text = std::get_if<Text>(&value)) {
    result = sqlite3_bind_text64(&statement, place, texts_.data() + text->from, text->size,
                                 SQLITE_STATIC, SQLITE_UTF8);
  } else {
    result = sqlite3_bind_null(&statement, place);
  }
  database_.Require(result);
}

void SqliteInsertion::Insert(sqlite3_stmt& statement) {
  int place = 0;
  for (const Value& value : values_) Bind(statement, ++place, value);
  const int result = sqlite3_step(&statement);
  if (result == SQLITE_NOMEM) throw std::bad_alloc();
  if (result != SQLITE_DONE) database_.Fail();
  database_.Require(sqlite3_reset(&statement));
  values_.clear();
  texts_.clear();
}

}  // namespace tavrel::host
