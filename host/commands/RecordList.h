// Lists whose records all have the same fields, for other programs: as JSON, or parted by commas or tabs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/commands/ListFormat.h"
#include "host/output/Csv.h"
#include "host/output/Json.h"

namespace tavrel::host {

// A value as both forms have it: where there is none, null or an empty cell.
class RecordValue {
 public:
  RecordValue(std::optional<std::string> text) : text_(std::move(text)) {}
  RecordValue(std::string_view text) : text_(text) {}
  RecordValue(const std::string& text) : text_(text) {}
  RecordValue(std::int64_t number) : text_(std::to_string(number)), isText_(false) {}

  // JSON that is written out already.
  [[nodiscard]] static RecordValue Written(std::string json);

  [[nodiscard]] std::string_view Cell() const noexcept {
    return text_ ? *text_ : std::string_view();
  }
  void AppendJson(std::string& json) const;

 private:
  std::optional<std::string> text_;
  bool isText_ = true;
};

// Prints them one after the other, and holds none.
class RecordList {
 public:
  // names: of the fields, in their order; borrowed: literals. format: not a table, which has its own columns.
  RecordList(std::vector<std::string_view> names, ListFormat format, bool forSpreadsheet,
             Output& output);

  // A value for each name.
  void Add(const std::vector<RecordValue>& values);
  void End();

 private:
  std::vector<std::string_view> names_;
  std::optional<JsonList> json_;
  std::optional<CsvWriter> csv_;
};

}  // namespace tavrel::host
