#include <gtest/gtest.h>

#include <string>

#include "host/output/Csv.h"
#include "host/output/PlainAscii.h"

namespace tavrel::host {
namespace {

class Text : public Sink {
 public:
  void Write(std::string_view text) override { text_ += text; }
  [[nodiscard]] const std::string& Get() const { return text_; }

 private:
  std::string text_;
};

std::string RowOf(const std::string& cell, Separation separation, bool forSpreadsheet) {
  Text text;
  CsvWriter writer(text, separation, forSpreadsheet);
  writer.Add("first");
  writer.Add(cell);
  writer.EndRow();
  return text.Get();
}

// For spreadsheets every cell is looked at character by character; what begins with a letter is the same there.
TEST(Csv, HasEveryByteAtEveryPlaceAsTheCarefulWayHasIt) {
  for (int byte = 0; byte < 256; ++byte) {
    for (std::size_t place = 1; place < 4; ++place) {
      std::string cell = "abc";
      cell.insert(place, 1, static_cast<char>(byte));
      for (const Separation separation : {Separation::Commas, Separation::Tabs}) {
        EXPECT_EQ(RowOf(cell, separation, false), RowOf(cell, separation, true)) << byte;
      }
    }
  }
}

TEST(PlainAscii, IsToldFromEveryOtherByteAtEveryPlace) {
  for (std::size_t size = 1; size < 20; ++size) {
    for (std::size_t place = 0; place < size; ++place) {
      for (int byte = 0; byte < 256; ++byte) {
        std::string text(size, place % 2 == 0 ? ' ' : '~');  // the outermost that are plain
        text[place] = static_cast<char>(byte);
        const bool isPlain = byte >= 0x20 && byte < 0x7F && byte != ',' && byte != '"';
        ASSERT_EQ((IsPlainAsciiWithout<',', '"'>(text)), isPlain)
            << size << ' ' << place << ' ' << byte;
      }
    }
  }
  EXPECT_TRUE((IsPlainAsciiWithout<',', '"'>("")));
}

TEST(Csv, QuotesWhatWouldEndACell) {
  EXPECT_EQ(RowOf("a,b", Separation::Commas, false), "first,\"a,b\"\r\n");
  EXPECT_EQ(RowOf("a\"b", Separation::Commas, false), "first,\"a\"\"b\"\r\n");
  EXPECT_EQ(RowOf("a\nb", Separation::Commas, false), "first,\"a\nb\"\r\n");
  EXPECT_EQ(RowOf("a,b", Separation::Tabs, false), "first\ta,b\n");
  EXPECT_EQ(RowOf("", Separation::Commas, false), "first,\r\n");
}

TEST(Csv, GuardsNegativeNumbersForSpreadsheetsToo) {
  for (const bool forSpreadsheet : {false, true}) {
    Text text;
    CsvWriter writer(text, Separation::Commas, forSpreadsheet);
    writer.AddPlain("-5");
    writer.AddPlain("true");
    writer.EndRow();
    EXPECT_EQ(text.Get(), forSpreadsheet ? "'-5,true\r\n" : "-5,true\r\n");
  }
}

}  // namespace
}  // namespace tavrel::host
