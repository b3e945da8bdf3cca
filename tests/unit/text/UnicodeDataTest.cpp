// Unicode's own data, where a package of the system has put it; skipped where it is missing. It may
// be of another version than utf8proc's: characters that utf8proc does not know are left out.
#include <gtest/gtest.h>
#include <utf8proc.h>

#include <fstream>
#include <map>
#include <optional>
#include <sstream>

#include "tests/reference/SearchModel.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/Texts.h"
#include "tests/unit/text/Folded.h"

namespace {

// Of the lines, where every step takes many times longer.
constexpr int kLineStride = tavrel::test::kSlow ? 11 : 1;

using tavrel::test::Decomposed;
using tavrel::test::Finds;
using tavrel::test::Folded;
using tavrel::test::Utf8;

std::string Fold(std::string_view text) {
  return std::string(Folded(text).bytes());
}

bool IsKnown(std::int32_t point) {
  return utf8proc_category(point) != UTF8PROC_CATEGORY_CN;
}

// "0041 0301" as a text; none when it names a character that utf8proc does not know.
std::optional<std::string> ReadText(const std::string& field) {
  std::istringstream numbers(field);
  std::string text;
  std::string number;
  while (numbers >> number) {
    const auto point = static_cast<std::int32_t>(std::stoul(number, nullptr, 16));
    if (!IsKnown(point)) return std::nullopt;
    text += Utf8(point);
  }
  return text;
}

std::vector<std::string> Fields(const std::string& line) {
  std::istringstream parts(line.substr(0, line.find('#')));
  std::vector<std::string> fields;
  for (std::string field; std::getline(parts, field, ';');) fields.push_back(field);
  return fields;
}

TEST(UnicodeData, EveryCharacterFoldsAsTheCaseFoldingDataSays) {
  std::ifstream file(TAVREL_CASE_FOLDING);
  ASSERT_TRUE(file) << TAVREL_CASE_FOLDING << " is missing (Debian: unicode-data)";
  std::map<std::int32_t, std::string> foldings;
  for (std::string line; std::getline(file, line);) {
    const std::vector<std::string> fields = Fields(line);
    if (fields.size() < 3 || (fields[1] != " C" && fields[1] != " F")) continue;
    const auto point = static_cast<std::int32_t>(std::stoul(fields[0], nullptr, 16));
    const std::optional<std::string> folding = ReadText(fields[2]);
    if (IsKnown(point) && folding) foldings[point] = *folding;
  }
  EXPECT_GT(foldings.size(), 1400u);
  for (std::int32_t point = 1; point < 0x110000; ++point) {
    if (!tavrel::test::IsWorthATest(point)) continue;
    const auto folding = foldings.find(point);
    const std::string expected = folding == foldings.end() ? Utf8(point) : folding->second;
    ASSERT_EQ(Fold(Utf8(point)), Decomposed(expected)) << std::hex << point;
  }
}

TEST(UnicodeData, TextsFoldAlikeInEveryNormalFormAndAreFoundInEachOther) {
  std::ifstream file(TAVREL_NORMALIZATION_TEST);
  ASSERT_TRUE(file) << TAVREL_NORMALIZATION_TEST << " is missing (Debian: unicode-data)";
  int count = 0;
  for (std::string line; std::getline(file, line);) {
    const std::vector<std::string> fields = Fields(line);
    if (fields.size() < 5) continue;
    const std::optional<std::string> source = ReadText(fields[0]);
    const std::optional<std::string> composed = ReadText(fields[1]);
    const std::optional<std::string> decomposed = ReadText(fields[2]);
    if (!source || !composed || !decomposed) continue;
    if (++count % kLineStride != 0) continue;
    ASSERT_EQ(Fold(*source), Fold(*decomposed)) << line;
    ASSERT_EQ(Fold(*composed), Fold(*decomposed)) << line;
    for (const std::string& text : {*source, *composed, *decomposed}) {
      ASSERT_TRUE(Finds(text, *source)) << line;
      ASSERT_TRUE(Finds(text, *decomposed)) << line;
    }
  }
  EXPECT_GT(count, 10000);
}

}  // namespace
