// Tables of texts that fit the width of the terminal.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/output/Output.h"
#include "host/output/Rows.h"
#include "host/output/Terminal.h"

namespace tavrel::host {

enum class Align { Left, Right };

// Where a text that is too wide loses what is too much. Names of classical works differ at their
// ends.
enum class Cut { End, Middle };

struct Column {
  std::string_view title;  // borrowed: a literal
  Align align = Align::Left;
  Style style = Style::Plain;
  // Where room is scarce, columns with a weight are narrowed so that their widths keep these
  // proportions; 0: never narrowed.
  std::size_t weight = 0;
  // Columns of the highest rank are the first to be left out where narrowing is not enough; 0:
  // never.
  int rank = 0;
  Cut cut = Cut::End;
};

// Whether lines lose the blanks at their ends, or all get the width of the widest.
enum class LineEnd { Trimmed, Padded };

// Without a limit to the width, cells that are wider than this stand whole but are not what others are
// lined up with: one such cell would fill every row of the list with blanks. iTunes lets nobody write a
// text of more than 255 characters.
inline constexpr std::size_t kWidestAligned = 256;

// Cost: the rows are asked for once when the table is made and once each time that it is printed, and none
// are kept.
class Table {
 public:
  Table(std::vector<Column> columns, GiveRows rows);

  // Prints the header and the rows, none wider than the terminal, without the columns that no row fills. A
  // cut text ends in "…". Below about ten columns the numbers alone may be wider than the terminal.
  void Print(const Terminal& terminal, Output& output) const;

  // The same lines, for a table that is known to be short.
  [[nodiscard]] std::vector<std::string> Lines(const Terminal& terminal,
                                               LineEnd end = LineEnd::Trimmed) const;

  // The columns that the widest of these lines takes.
  [[nodiscard]] std::size_t Width(const Terminal& terminal) const;

  [[nodiscard]] bool IsEmpty() const noexcept { return rowCount_ == 0; }

 private:
  class Measure;
  class Printer;
  using TakeLine = std::function<void(std::string&&)>;

  [[nodiscard]] std::vector<std::size_t> FittedWidths(std::size_t limit) const;
  void GiveLines(const Terminal& terminal, LineEnd end, const TakeLine& take) const;

  std::vector<Column> columns_;
  GiveRows rows_;
  std::size_t rowCount_ = 0;
  std::vector<std::size_t> naturalWidths_;
  std::vector<std::size_t> alignedWidths_;  // of the cells that others are lined up with
  std::vector<bool> isFilled_;              // whether a column has any text under its title
};

}  // namespace tavrel::host
