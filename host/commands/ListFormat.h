// The formats that lists are printed in.
#pragma once

#include <optional>
#include <string>

#include "host/arguments/CommandDefinition.h"
#include "host/library/Options.h"
#include "host/output/Csv.h"

namespace tavrel::host {

enum class ListFormat { Table, Json, JsonLines, Csv, Tsv };

struct FormatOptions {
  std::optional<std::string> format;  // none: a table, or JSON when --json is given
  bool forSpreadsheet = false;
};

enum class JsonLines { Offered, NotOffered };

// --format and --spreadsheet.
void AddFormatOptions(CommandDefinition command, FormatOptions& format, JsonLines jsonLines);

// What was asked for.
[[nodiscard]] ListFormat FormatOf(const FormatOptions& format, const Options& options);

// Of ListFormat::Csv and ListFormat::Tsv.
[[nodiscard]] Separation SeparationOf(ListFormat format);

}  // namespace tavrel::host
