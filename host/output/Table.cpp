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

// A cell's text that fits `width` columns, with what is marked in it.
struct Shown {
  std::string text;
  std::size_t width;
  std::size_t kept;  // the bytes that are the text's own
};

std::string Styled(const Shown& shown, Style style, const std::optional<TextRange>& mark,
                   const Terminal& terminal) {
  const std::string_view text = shown.text;
  if (!mark || mark->from >= mark->to) return terminal.Styled(style, text);
  const std::size_t from = std::min(mark->from, shown.kept);
  const std::size_t to = std::min(mark->to, shown.kept);
  return terminal.Styled(style, text.substr(0, from)) +
         terminal.Styled(Style::Marked, text.substr(from, to - from)) +
         terminal.Styled(style, text.substr(to));
}

}  // namespace

void Rows::Add(std::int64_t number) {
  Add(std::string_view(fmt::format_int(number).c_str()));
}

// Widths and counts.
class Table::Measure : public Rows {
 public:
  explicit Measure(Table& table) : table_(table) {}

  void Add(std::string_view text) override {
    clean_.clear();
    const std::size_t width = AppendClean(clean_, text);
    std::size_t& natural = table_.naturalWidths_[column_];
    std::size_t& aligned = table_.alignedWidths_[column_];
    natural = std::max(natural, width);
    if (width <= kWidestAligned) aligned = std::max(aligned, width);
    if (width > 0) table_.isFilled_[column_] = true;
    if (++column_ < table_.columns_.size()) return;
    column_ = 0;
    ++table_.rowCount_;
  }

 private:
  Table& table_;
  std::size_t column_ = 0;
  std::string clean_;
};

// Lines, one a row.
class Table::Printer : public Rows {
 public:
  Printer(const Table& table, const Terminal& terminal, LineEnd end, const TakeLine& take)
      : table_(table),
        terminal_(terminal),
        widths_(table.FittedWidths(terminal.width)),
        end_(end),
        take_(take) {}

  void AddHeader() {
    isHeader_ = true;
    for (const Column& column : table_.columns_) Add(column.title);
    isHeader_ = false;
  }

  void Add(std::string_view text) override { AddCell(text, nullptr); }
  void AddMarked(std::string_view text, const FindMark& find) override {
    AddCell(text, terminal_.styled ? &find : nullptr);
  }

 private:
  void AddCell(std::string_view text, const FindMark* find) {
    if (widths_[column_] != kLeftOut) AppendCell(text, find);
    if (++column_ < table_.columns_.size()) return;
    column_ = 0;
    if (end_ == LineEnd::Trimmed) line_.erase(line_.find_last_not_of(' ') + 1);
    take_(std::move(line_));
    line_.clear();
  }

  void AppendCell(std::string_view text, const FindMark* find) {
    const Column& column = table_.columns_[column_];
    const std::size_t room = widths_[column_];
    clean_.clear();
    const std::size_t width = AppendClean(clean_, text);
    const std::optional<TextRange> mark = find != nullptr ? (*find)(clean_) : std::nullopt;
    const Shown shown = FitTo(room, width, column.cut);
    const std::size_t padding = room - std::min(room, shown.width);
    const Style style = isHeader_ ? Style::Bold : column.style;

    if (!line_.empty()) line_ += kGap;
    if (column.align == Align::Right) line_.append(padding, ' ');
    line_ += Styled(shown, style, mark, terminal_);
    if (column.align == Align::Left) line_.append(padding, ' ');
  }

  [[nodiscard]] Shown FitTo(std::size_t room, std::size_t width, Cut cut) const {
    if (width <= room || terminal_.width == 0) return {clean_, width, clean_.size()};
    std::string cutText = Shorten(clean_, room, cut);
    const std::size_t kept = cutText.size() - kEllipsis.size();
    const std::size_t cutWidth = host::Width(cutText);
    return {std::move(cutText), cutWidth, kept};
  }

  const Table& table_;
  const Terminal& terminal_;
  std::vector<std::size_t> widths_;
  LineEnd end_;
  const TakeLine& take_;
  bool isHeader_ = false;
  std::size_t column_ = 0;
  std::string clean_;
  std::string line_;
};

Table::Table(std::vector<Column> columns, GiveRows rows)
    : columns_(std::move(columns)),
      rows_(std::move(rows)),
      naturalWidths_(columns_.size(), 1),
      alignedWidths_(columns_.size(), 1),
      isFilled_(columns_.size(), false) {
  Measure measure(*this);
  for (const Column& column : columns_) measure.Add(column.title);
  isFilled_.assign(columns_.size(), false);
  rowCount_ = 0;
  rows_(measure);
}

std::vector<std::size_t> Table::FittedWidths(std::size_t limit) const {
  std::vector<std::size_t> widths = limit == 0 ? alignedWidths_ : naturalWidths_;
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

void Table::GiveLines(const Terminal& terminal, LineEnd end, const TakeLine& take) const {
  Printer printer(*this, terminal, end, take);
  printer.AddHeader();
  rows_(printer);
}

std::vector<std::string> Table::Lines(const Terminal& terminal, LineEnd end) const {
  std::vector<std::string> lines;
  GiveLines(terminal, end, [&lines](std::string&& line) { lines.push_back(std::move(line)); });
  return lines;
}

void Table::Print(const Terminal& terminal, Output& output) const {
  GiveLines(terminal, LineEnd::Trimmed, [&output](std::string&& line) { output.WriteLine(line); });
}

}  // namespace tavrel::host
