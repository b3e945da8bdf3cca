// Lists for spreadsheets and other programs: values parted by commas or tabs, a row a line.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/output/GrowingText.h"
#include "host/output/Sink.h"

namespace tavrel::host {

enum class Separation { Commas, Tabs };

// With commas by RFC 4180: rows end in CR LF, and a cell with a comma, a quote or a line end stands in
// quotes, its own quotes doubled. With tabs, which know no quotes, rows end in LF, and tabs and line ends
// within a cell become one blank. Control characters go, so that a terminal takes nothing for a command;
// bytes that are not UTF-8 become U+FFFD.
class CsvWriter {
 public:
  // forSpreadsheet: a cell that begins with '=', '+', '-' or '@' gets an apostrophe in front, so that no
  // spreadsheet takes it for a formula.
  CsvWriter(Sink& output, Separation separation, bool forSpreadsheet)
      : output_(output),
        separator_(separation == Separation::Commas ? ',' : '\t'),
        forSpreadsheet_(forSpreadsheet) {}

  void Add(std::string_view cell);
  // Numbers and truth values as JSON writes them, and dates, in which nothing needs quotes.
  void AddPlain(std::string_view cell) {
    if (forSpreadsheet_) return Add(cell);
    AddOrdinary(cell);
  }
  void EndRow();

  // The row so far. One that has to wait goes on later where it stopped: with its text, and how many cells that is.
  [[nodiscard]] std::string_view Row() const noexcept {
    return row_.View().substr(row_.Size() == 0 ? 0 : 1);
  }
  void DropRow() noexcept { row_.Clear(); }
  void SetRow(std::string_view row, std::size_t cells) {
    if (row.data() == Row().data() && row.size() == Row().size()) return;  // it has not had to wait
    DropRow();
    if (cells > 0) AddOrdinary(row);
  }

 private:
  void AddOrdinary(std::string_view cell) {
    char* at = row_.RoomFor(1 + cell.size());
    *at = separator_;
    row_.EndAt(GrowingText::Copy(cell, at + 1));
  }
  void AddWithCare(std::string_view cell);

  Sink& output_;
  char separator_;
  bool forSpreadsheet_;
  GrowingText row_;  // a separator before each cell
  std::string clean_;
};

}  // namespace tavrel::host
