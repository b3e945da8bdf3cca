#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "host/output/EditDistance.h"
#include "tests/support/Random.h"

namespace tavrel::host {
namespace {

// The table of the distances of all starts, row by row; ASCII only.
std::size_t PlainDistance(const std::string& from, const std::string& to) {
  std::vector<std::size_t> row(to.size() + 1);
  for (std::size_t j = 0; j < row.size(); ++j) row[j] = j;
  for (std::size_t i = 0; i < from.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < to.size(); ++j) {
      const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

TEST(EditDistance, CountsCharacters) {
  EXPECT_EQ(EditDistance("").To(""), 0u);
  EXPECT_EQ(EditDistance("").To("abc"), 3u);
  EXPECT_EQ(EditDistance("abc").To(""), 3u);
  EXPECT_EQ(EditDistance("kitten").To("sitting"), 3u);
  EXPECT_EQ(EditDistance("Dvořák").To("Dvorak"), 2u);
  EXPECT_EQ(EditDistance("交響曲").To("交響"), 1u);
  EXPECT_EQ(EditDistance("caf\xE9").To("caf\xE8"), 0u) << "bytes that are no text are alike";
}

TEST(EditDistance, IsThatOfThePlainTableWhateverTheLengths) {
  test::Random random(11);
  const std::vector<std::string_view> alphabet{"a", "b", "c"};
  for (int round = 0; round < 400; ++round) {
    const std::string wanted = random.Text(alphabet, random.Below(200));
    std::string text = random.Text(alphabet, random.Below(200));
    if (round % 2 == 0) {  // one that comes near
      text = wanted;
      for (std::size_t i = random.Below(9); i > 0 && !text.empty(); --i) {
        text.erase(random.Below(text.size()), random.Below(3));
        text.insert(random.Below(text.size() + 1), "d");
      }
    }
    ASSERT_EQ(EditDistance(wanted).To(text), PlainDistance(wanted, text)) << wanted << ' ' << text;
  }
}

}  // namespace
}  // namespace tavrel::host
