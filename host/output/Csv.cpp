#include "host/output/Csv.h"

#include <algorithm>
#include <array>

#include "host/output/PlainAscii.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

// Whether it may stand in a cell of either kind as it is.
constexpr std::array<bool, 256> kIsOrdinary = [] {
  std::array<bool, 256> isOrdinary{};
  for (std::size_t byte = 0x20; byte < 0x7F; ++byte) isOrdinary[byte] = byte != ',' && byte != '"';
  return isOrdinary;
}();

// How many of the characters at the start are ordinary.
std::size_t OrdinaryLength(std::string_view text) {
  const auto end = std::find_if_not(text.begin(), text.end(), [](char letter) {
    return kIsOrdinary[static_cast<unsigned char>(letter)];
  });
  return static_cast<std::size_t>(end - text.begin());
}

bool IsAsciiLineEndOrTab(std::int32_t code) {
  return code == '\t' || code == '\n' || code == '\r';
}

bool IsControl(std::int32_t code) {
  return (code >= 0 && code < 0x20 && !IsAsciiLineEndOrTab(code)) || (code >= 0x7F && code < 0xA0);
}

void AppendWithoutControls(std::string& target, std::string_view text) {
  for (;;) {
    const std::size_t ordinary = OrdinaryLength(text);
    target += text.substr(0, ordinary);
    text.remove_prefix(ordinary);
    if (text.empty()) return;
    const Character first = FirstCharacter(text);
    if (first.code < 0) target += kReplacementCharacter;
    if (first.code >= 0 && !IsControl(first.code)) target += text.substr(0, first.length);
    text.remove_prefix(first.length);
  }
}

// Each run of tabs and line ends as one blank.
void AppendOnOneLine(GrowingText& target, std::string_view text) {
  char* at = target.RoomFor(text.size());
  bool isBefore = false;
  for (const char letter : text) {
    const bool isBlank = IsAsciiLineEndOrTab(letter);
    if (!isBlank) *at++ = letter;
    if (isBlank && !isBefore) *at++ = ' ';
    isBefore = isBlank;
  }
  target.EndAt(at);
}

void AppendQuoted(GrowingText& target, std::string_view text) {
  char* at = target.RoomFor(2 * text.size() + 2);
  *at++ = '"';
  for (const char letter : text) {
    if (letter == '"') *at++ = '"';
    *at++ = letter;
  }
  *at++ = '"';
  target.EndAt(at);
}

}  // namespace

void CsvWriter::Add(std::string_view cell) {
  if (!forSpreadsheet_ && IsPlainAsciiWithout<',', '"'>(cell)) return AddOrdinary(cell);
  AddOrdinary({});
  AddWithCare(cell);
}

void CsvWriter::AddWithCare(std::string_view cell) {
  clean_.clear();
  AppendWithoutControls(clean_, cell);
  const bool isFormula =
      !clean_.empty() && std::string_view("=+-@").find(clean_[0]) != std::string_view::npos;
  if (forSpreadsheet_ && isFormula) clean_.insert(0, 1, '\'');
  if (separator_ == '\t') return AppendOnOneLine(row_, clean_);
  if (clean_.find_first_of(",\"\r\n") == std::string::npos) {
    row_.Append(clean_);
  } else {
    AppendQuoted(row_, clean_);
  }
}

void CsvWriter::EndRow() {
  if (row_.Size() == 0) AddOrdinary({});
  row_.Append(separator_ == ',' ? "\r\n" : "\n");
  output_.Write(Row());
  DropRow();
}

}  // namespace tavrel::host
