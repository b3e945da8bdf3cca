#include "host/output/Csv.h"

#include <algorithm>

#include "host/output/Text.h"

namespace tavrel::host {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

bool IsPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char letter) {
    const auto byte = static_cast<unsigned char>(letter);
    return byte >= 0x20 && byte < 0x7F;
  });
}

bool IsLineEndOrTab(std::int32_t code) {
  return code == '\t' || code == '\n' || code == '\r';
}

bool IsControl(std::int32_t code) {
  return (code >= 0 && code < 0x20 && !IsLineEndOrTab(code)) || (code >= 0x7F && code < 0xA0);
}

void AppendWithoutControls(std::string& target, std::string_view text) {
  while (!text.empty()) {
    const Character first = FirstCharacter(text);
    if (first.code < 0) target += kReplacement;
    if (first.code >= 0 && !IsControl(first.code)) target += text.substr(0, first.length);
    text.remove_prefix(first.length);
  }
}

// Each run of tabs and line ends as one blank.
void AppendOnOneLine(std::string& target, std::string_view text) {
  bool isBefore = false;
  for (const char letter : text) {
    const bool isBlank = IsLineEndOrTab(letter);
    if (!isBlank) target += letter;
    if (isBlank && !isBefore) target += ' ';
    isBefore = isBlank;
  }
}

void AppendQuoted(std::string& target, std::string_view text) {
  target += '"';
  for (const char letter : text) {
    if (letter == '"') target += '"';
    target += letter;
  }
  target += '"';
}

}  // namespace

void CsvWriter::Add(std::string_view cell) {
  if (cells_++ > 0) row_ += separation_ == Separation::Commas ? ',' : '\t';
  if (!IsPlain(cell)) {
    clean_.clear();
    AppendWithoutControls(clean_, cell);
    cell = clean_;
  }
  const bool isFormula =
      !cell.empty() && std::string_view("=+-@").find(cell[0]) != std::string_view::npos;
  if (forSpreadsheet_ && isFormula) {
    guarded_.assign(1, '\'').append(cell);
    cell = guarded_;
  }
  if (separation_ == Separation::Tabs) return AppendOnOneLine(row_, cell);
  if (cell.find_first_of(",\"\r\n") == std::string_view::npos) {
    row_ += cell;
  } else {
    AppendQuoted(row_, cell);
  }
}

void CsvWriter::EndRow() {
  row_ += separation_ == Separation::Commas ? "\r\n" : "\n";
  output_.Write(row_);
  row_.clear();
  cells_ = 0;
}

}  // namespace tavrel::host
