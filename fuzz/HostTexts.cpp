// Texts on their way to a terminal or another program: whatever they hold, what is written is clean, fits
// and can be read back. The first line of an input is a width and a term, the others are texts.
#include <algorithm>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/FuzzTarget.h"
#include "host/naming/FileNames.h"
#include "host/output/EditDistance.h"
#include "host/output/FindRange.h"
#include "host/output/Json.h"
#include "host/output/Table.h"
#include "host/output/Text.h"
#include "tests/support/Json.h"
#include "text/TextSearch.h"
#include "text/Utf8.h"

using namespace tavrel::host;
using tavrel::fuzz::Require;

namespace {

// Control characters of one byte, or of two.
bool HoldsControls(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x20 || byte == 0x7F) return true;
    if (byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0) {
      return true;
    }
  }
  return false;
}

void CheckClean(std::string_view text, std::size_t width) {
  std::string clean;
  Require(AppendClean(clean, text) == Width(clean), "Cleaning tells another width");
  Require(tavrel::text::IsValidUtf8(clean) && !HoldsControls(clean), "A clean text is not clean");
  Require(Clean(clean) == clean, "A clean text changes");
  const std::string_view prefix = Prefix(clean, width);
  const std::string_view suffix = Suffix(clean, width);
  Require(clean.starts_with(prefix) && Width(prefix) <= width, "A prefix is none, or too wide");
  Require(clean.ends_with(suffix) && Width(suffix) <= width, "A suffix is none, or too wide");
  Require(Fold(clean) == Fold(text), "A clean text folds differently");
}

void CheckJson(std::string_view text) {
  const std::string json = JsonValue(text).Text();
  Require(tavrel::text::IsValidUtf8(json) && !HoldsControls(json), "JSON is not clean");
  const auto value = tavrel::test::Json::Parse(json);  // what it throws at no JSON is a finding too
  Require(value.IsText(), "JSON holds no text");
  const bool isWhole = tavrel::text::IsValidUtf8(text);
  Require(!isWhole || value == text, "Another text comes back from JSON");
}

void CheckRange(std::string_view clean, const tavrel::text::SearchTerm& term) {
  const auto range = FindRange(clean, term);
  Require(range.has_value() == term.IsIn(clean), "A match has no range, or none has one");
  if (!range) return;
  Require(range->from < range->to && range->to <= clean.size(), "A range is none");
  const std::string_view found = clean.substr(range->from, range->to - range->from);
  Require(tavrel::text::IsValidUtf8(found) && term.IsIn(found), "A range holds no match");
  std::size_t second = 1;
  while (second < found.size() && (static_cast<unsigned char>(found[second]) & 0xC0) == 0x80)
    ++second;
  Require(!term.IsIn(found.substr(second)), "A range begins before its match");
}

// Three columns: the texts forwards, backwards and numbered; what `part` marks catches the eye.
void CheckTable(const std::vector<std::string_view>& texts, std::string_view part,
                std::size_t width) {
  const AccentlessTerm term(part);
  const auto find = [&term](std::string_view clean) {
    const auto range = term.FindIn(clean);
    Require(!range || (range->from <= range->to && range->to <= clean.size()), "A range is none");
    return range;
  };
  const Table table({{.title = "Name", .weight = 3},
                     {.title = "Artist", .weight = 2, .rank = 1, .cut = Cut::Middle},
                     {.title = "Number", .align = Align::Right, .rank = 2}},
                    [&](Rows& rows) {
                      for (std::size_t i = 0; i < texts.size(); ++i) {
                        rows.AddMarked(texts[i], find);
                        rows.Add(texts[texts.size() - 1 - i]);
                        rows.Add(static_cast<std::int64_t>(i));
                      }
                    });
  for (const bool styled : {false, true}) {
    for (const std::string& line : table.Lines({width, styled})) {
      Require(styled || width < 20 || Width(line) <= width, "A line is too wide");
      Require(tavrel::text::IsValidUtf8(line), "A line is not UTF-8");
    }
  }
}

std::vector<std::int32_t> Characters(std::string_view clean) {
  std::vector<std::int32_t> characters;
  while (!clean.empty()) {
    characters.push_back(FirstCharacter(clean).code);
    clean.remove_prefix(FirstCharacter(clean).length);
  }
  return characters;
}

// How many characters must be inserted, removed or replaced, cell by cell of the whole table.
std::size_t PlainDistance(std::string_view left, std::string_view right) {
  const auto from = Characters(left);
  const auto to = Characters(right);
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (const std::int32_t character : from) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < to.size(); ++j) {
      const std::size_t replaced = diagonal + (character == to[j] ? 0u : 1u);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

void CheckNames(const std::vector<std::string_view>& texts) {
  FileNames names;
  std::vector<std::string> given;
  for (const std::string_view text : texts) {
    for (int i = 0; i < 2; ++i) given.push_back(names.Take(SafeName(text), ".png"));
    Require(given.back().size() <= kLongestFileName && !given.back().starts_with('.') &&
                given.back().find('/') == std::string::npos,
            "A file cannot have this name");
  }
  for (std::string& name : given) name = FoldFileName(name);
  std::sort(given.begin(), given.end());
  Require(std::adjacent_find(given.begin(), given.end()) == given.end(), "Two names are alike");
}

void CheckTexts(std::string_view input) {
  if (input.empty()) return;
  const auto width = static_cast<std::size_t>(static_cast<unsigned char>(input.front()));
  std::vector<std::string_view> lines;
  for (input.remove_prefix(1);; input.remove_prefix(lines.back().size() + 1)) {
    lines.push_back(input.substr(0, input.find('\n')));
    if (lines.back().size() == input.size()) break;
  }
  const std::string_view first = lines.front();
  const std::string_view term = first.substr(0, first.find('\0'));
  const tavrel::text::SearchTerm prepared(term);
  std::vector<std::string> clean;
  for (const std::string_view line : lines) {
    CheckClean(line, width);
    CheckJson(line);
    clean.push_back(Clean(line));
    CheckRange(clean.back(), prepared);
  }
  (void)FoldLine(clean, width);
  const std::string_view some = Prefix(clean.front(), 150);
  const std::string_view others = Prefix(clean.back(), 150);
  Require(EditDistance(some).To(others) == PlainDistance(some, others), "A distance is another");
  CheckTable(lines, term, width);
  CheckNames(lines);
}

const tavrel::fuzz::Target hostTextsTarget("host_texts", CheckTexts);

}  // namespace
