#include "host/commands/ListFormat.h"

#include <vector>

namespace tavrel::host {

void AddFormatOptions(CommandDefinition command, FormatOptions& format, JsonLines jsonLines) {
  const bool withLines = jsonLines == JsonLines::Offered;
  std::vector<std::string> formats{"table", "json", "csv", "tsv"};
  if (withLines) formats.insert(formats.begin() + 2, "jsonl");
  command.AddChoice("--format", format.format, formats,
                    withLines ? "table, json, jsonl, csv or tsv" : "table, json, csv or tsv",
                    "FORMAT");
  command.AddFlag("--spreadsheet", format.forSpreadsheet,
                  "With csv and tsv: an apostrophe before what a spreadsheet would run");
}

ListFormat FormatOf(const FormatOptions& format, const Options& options) {
  if (!format.format) return options.json ? ListFormat::Json : ListFormat::Table;
  if (*format.format == "json") return ListFormat::Json;
  if (*format.format == "jsonl") return ListFormat::JsonLines;
  if (*format.format == "csv") return ListFormat::Csv;
  if (*format.format == "tsv") return ListFormat::Tsv;
  return ListFormat::Table;
}

Separation SeparationOf(ListFormat format) {
  return format == ListFormat::Csv ? Separation::Commas : Separation::Tabs;
}

}  // namespace tavrel::host
