// Tables of texts that fit the width of the terminal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/output/Output.h"
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

class Table {
 public:
  explicit Table(std::vector<Column> columns);

  // Adds the next cell, row by row from left to right. The text may hold anything: it is cleaned
  // here.
  void Add(std::string_view text);
  void Add(std::int64_t number);
  // Adds a clean text, of which a part is to catch the eye; only where a text is cut at its end.
  // from, to: byte offsets of that part; the same when there is none.
  void AddMarked(std::string_view clean, std::size_t from, std::size_t to);

  // The header and the rows, none wider than the terminal, without the columns that no row fills. A
  // cut text ends in "…". Below about ten columns the numbers alone may be wider than the terminal.
  [[nodiscard]] std::vector<std::string> Lines(const Terminal& terminal,
                                               LineEnd end = LineEnd::Trimmed) const;

  void Print(const Terminal& terminal, Output& output) const;

  // The columns that the widest of these lines takes.
  [[nodiscard]] std::size_t Width(const Terminal& terminal) const;

  [[nodiscard]] bool IsEmpty() const noexcept { return cells_.size() == columns_.size(); }

 private:
  struct Cell {
    std::size_t end;    // where its text ends in text_
    std::size_t width;  // in terminal columns
  };

  struct Mark {
    std::size_t cell;
    std::size_t from;  // in the cell's text
    std::size_t to;
  };

  [[nodiscard]] std::vector<std::size_t> FittedWidths(std::size_t limit) const;
  // shown: the cell's text as far as it fits, of which `kept` bytes are the text's own.
  [[nodiscard]] std::string StyledCell(std::size_t cell, std::string_view shown, std::size_t kept,
                                       const Terminal& terminal) const;
  void AppendCell(std::string& line, std::size_t cell, std::size_t width,
                  const Terminal& terminal) const;

  std::vector<Column> columns_;
  std::vector<std::size_t> naturalWidths_;
  std::vector<bool> isFilled_;  // whether a column has any text under its title
  std::string text_;  // all cells, one behind the other, cleaned; the header is the first row
  std::vector<Cell> cells_;
  std::vector<Mark> marks_;  // in the order of their cells
};

}  // namespace tavrel::host
