#include "host/output/Table.h"

#include <fmt/format.h>

#include <algorithm>

#include "host/output/Text.h"

namespace tavrel::host {
namespace {

constexpr std::string_view kGap = "  ";
constexpr std::string_view kEllipsis = "…";  // one column wide
constexpr std::size_t kLeftOut = 0;          // the width of a column that is not shown
constexpr std::size_t kLeastPerWeight = 8;   // narrower columns tell too little

std::size_t Total(const std::vector<std::size_t>& widths) {
  std::size_t total = 0;
  std::size_t shown = 0;
  for (const std::size_t width : widths) {
    total += width;
    if (width != kLeftOut) ++shown;
  }
  return total + (shown > 1 ? (shown - 1) * kGap.size() : 0);
}

// Leaves out columns until the rest, each at its least width, is no wider than `limit`.
void LeaveOut(const std::vector<Column>& columns, std::size_t limit,
              std::vector<std::size_t>& widths) {
  for (;;) {
    std::vector<std::size_t> least = widths;
    std::size_t last = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const std::size_t weight = columns[i].weight;
      if (weight > 0) least[i] = std::min(widths[i], weight * kLeastPerWeight);
      if (widths[i] != kLeftOut && columns[i].rank > columns[last].rank) last = i;
    }
    if (Total(least) <= limit || columns[last].rank == 0 || widths[last] == kLeftOut) return;
    widths[last] = kLeftOut;
  }
}

// Narrows the columns that have a weight, the relatively widest first, until all fit or none gives
// way.
void Narrow(const std::vector<Column>& columns, std::size_t limit,
            std::vector<std::size_t>& widths) {
  for (std::size_t total = Total(widths); total > limit; --total) {
    std::size_t widest = columns.size();
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (columns[i].weight == 0 || widths[i] <= 1) continue;
      if (widest == columns.size() ||
          widths[i] * columns[widest].weight > widths[widest] * columns[i].weight) {
        widest = i;
      }
    }
    if (widest == columns.size()) return;
    --widths[widest];
  }
}

// Cuts a clean text that is wider than `width`, which is at least 1.
std::string Shorten(std::string_view text, std::size_t width, Cut cut) {
  const std::size_t room = width - 1;
  const std::size_t tail = cut == Cut::Middle ? room / 2 : 0;
  std::string shortened(Prefix(text, room - tail));
  shortened += kEllipsis;
  if (tail > 0) shortened += Suffix(text, tail);
  return shortened;
}

}  // namespace

Table::Table(std::vector<Column> columns)
    : columns_(std::move(columns)),
      naturalWidths_(columns_.size(), 1),
      isFilled_(columns_.size(), false) {
  for (const Column& column : columns_) Add(column.title);
}

void Table::Add(std::string_view text) {
  const std::size_t column = cells_.size() % columns_.size();
  const std::size_t width = AppendClean(text_, text);
  cells_.push_back({text_.size(), width});
  naturalWidths_[column] = std::max(naturalWidths_[column], width);
  if (width > 0 && cells_.size() > columns_.size()) isFilled_[column] = true;
}

void Table::Add(std::int64_t number) {
  Add(fmt::format_int(number).c_str());
}

void Table::AddMarked(std::string_view clean, std::size_t from, std::size_t to) {
  if (from < to) marks_.push_back({cells_.size(), from, to});
  Add(clean);
}

std::vector<std::size_t> Table::FittedWidths(std::size_t limit) const {
  std::vector<std::size_t> widths = naturalWidths_;
  const bool isAnyFilled = std::find(isFilled_.begin(), isFilled_.end(), true) != isFilled_.end();
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (isAnyFilled && !isFilled_[i]) widths[i] = kLeftOut;
  }
  if (limit == 0) return widths;
  for (std::size_t& width : widths) width = std::min(width, limit);
  LeaveOut(columns_, limit, widths);
  Narrow(columns_, limit, widths);
  return widths;
}

std::size_t Table::Width(const Terminal& terminal) const {
  return Total(FittedWidths(terminal.width));
}

std::string Table::StyledCell(std::size_t cell, std::string_view shown, std::size_t kept,
                              const Terminal& terminal) const {
  const Style style = cell < columns_.size() ? Style::Bold : columns_[cell % columns_.size()].style;
  const auto mark =
      std::lower_bound(marks_.begin(), marks_.end(), cell,
                       [](const Mark& each, std::size_t wanted) { return each.cell < wanted; });
  if (mark == marks_.end() || mark->cell != cell) return terminal.Styled(style, shown);
  const std::size_t from = std::min(mark->from, kept);
  const std::size_t to = std::min(mark->to, kept);
  return terminal.Styled(style, shown.substr(0, from)) +
         terminal.Styled(Style::Marked, shown.substr(from, to - from)) +
         terminal.Styled(style, shown.substr(to));
}

void Table::AppendCell(std::string& line, std::size_t cell, std::size_t width,
                       const Terminal& terminal) const {
  const Column& column = columns_[cell % columns_.size()];
  const std::size_t start = cell == 0 ? 0 : cells_[cell - 1].end;
  const std::string_view whole(text_.data() + start, cells_[cell].end - start);

  const bool isCut = cells_[cell].width > width;
  const std::string shown = isCut ? Shorten(whole, width, column.cut) : std::string(whole);
  const std::size_t shownWidth = isCut ? host::Width(shown) : cells_[cell].width;
  const std::size_t padding = width - shownWidth;
  if (column.align == Align::Right) line.append(padding, ' ');
  const std::size_t kept = shown.size() - (isCut ? kEllipsis.size() : 0);
  line += StyledCell(cell, shown, kept, terminal);
  if (column.align == Align::Left) line.append(padding, ' ');
}

std::vector<std::string> Table::Lines(const Terminal& terminal, LineEnd end) const {
  const std::vector<std::size_t> widths = FittedWidths(terminal.width);
  std::vector<std::string> lines;
  lines.reserve(cells_.size() / columns_.size());
  for (std::size_t row = 0; row + columns_.size() <= cells_.size(); row += columns_.size()) {
    std::string line;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
      if (widths[column] == kLeftOut) continue;
      if (!line.empty()) line += kGap;
      AppendCell(line, row + column, widths[column], terminal);
    }
    if (end == LineEnd::Trimmed) line.erase(line.find_last_not_of(' ') + 1);
    lines.push_back(std::move(line));
  }
  return lines;
}

void Table::Print(const Terminal& terminal, Output& output) const {
  for (const std::string& line : Lines(terminal)) output.WriteLine(line);
}

}  // namespace tavrel::host
