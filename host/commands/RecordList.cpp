#include "host/commands/RecordList.h"

#include <utility>

namespace tavrel::host {

RecordValue RecordValue::Written(std::string json) {
  RecordValue value(std::optional<std::string>(std::move(json)));
  value.isText_ = false;
  return value;
}

void RecordValue::AppendJson(std::string& json) const {
  if (!text_) {
    json += "null";
  } else if (isText_) {
    AppendJsonText(json, *text_);
  } else {
    json += *text_;
  }
}

RecordList::RecordList(std::vector<std::string_view> names, ListFormat format, bool forSpreadsheet,
                       Output& output)
    : names_(std::move(names)) {
  if (format == ListFormat::Json) {
    json_.emplace(output);
    return;
  }
  csv_.emplace(output, SeparationOf(format), forSpreadsheet);
  for (const std::string_view name : names_) csv_->Add(name);
  csv_->EndRow();
}

void RecordList::Add(const std::vector<RecordValue>& values) {
  if (csv_) {
    for (const RecordValue& value : values) csv_->Add(value.Cell());
    csv_->EndRow();
    return;
  }
  std::string json = "{";
  for (std::size_t i = 0; i < names_.size(); ++i) {
    if (i > 0) json += ',';
    json.append(1, '"').append(names_[i]).append("\":");
    values[i].AppendJson(json);
  }
  json_->AddText(json + "}");
}

void RecordList::End() {
  if (json_) json_->End();
}

}  // namespace tavrel::host
