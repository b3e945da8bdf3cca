#include <gtest/gtest.h>

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/FieldTexts.h"
#include "host/library/LocationReader.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"
#include "text/FileUrl.h"

namespace tavrel::host {
namespace {

// One digit after the other.
std::optional<std::int64_t> PlainNumberIn(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isWhole = error == std::errc() && end == text.data() + text.size();
  return isWhole ? std::optional(number) : std::nullopt;
}

TEST(NumberIn, IsWhatOneDigitAfterTheOtherGives) {
  const std::vector<std::string_view> digits{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};
  test::Random random(31);
  for (int round = 0; round < test::Rounds(100000); ++round) {
    std::string text = random.Text(digits, random.Below(21));
    EXPECT_EQ(NumberIn(text), PlainNumberIn(text)) << text;
    if (text.empty()) continue;
    text[random.Below(text.size())] = random.Bytes(1).front();
    EXPECT_EQ(NumberIn(text), PlainNumberIn(text)) << text;
    if (HasFailure()) return;
  }
}

TEST(NumberIn, TakesNoOtherByteForADigit) {
  for (std::size_t size = 1; size <= 9; ++size) {
    for (std::size_t at = 0; at < size; ++at) {
      for (int byte = 0; byte < 256; ++byte) {
        std::string text(size, '7');
        text[at] = static_cast<char>(byte);
        EXPECT_EQ(NumberIn(text), PlainNumberIn(text)) << text;
      }
    }
  }
}

// As LocationReader tells it, of this location and of those before.
std::optional<std::string> PathBy(LocationReader& reader, const std::string& location) {
  reader.Read(location, "File", true);
  const std::optional<std::string_view> path = reader.WrittenPath();
  return path ? std::optional(std::string(*path)) : std::nullopt;
}

TEST(LocationReader, TellsTheSamePathWhateverCameBefore) {
  const std::vector<std::string_view> starts{"file://localhost/", "file:///", "file://host/",
                                             "file:", "FILE:///"};
  const std::vector<std::string_view> pieces{"a/", "%C3%A9/", "b", "%20", "%2F", "%C3",
                                             "?",  "#",       "%", "/",   "a/",  "a/"};
  test::Random random(32);
  LocationReader reader(nullptr);
  for (int round = 0; round < test::Rounds(100000); ++round) {
    std::string url(starts[random.Below(random.Below(3) == 0 ? starts.size() : 2)]);
    url += random.Text(pieces, random.Below(5));
    EXPECT_EQ(PathBy(reader, url), text::PathOfUrl(url)) << url;
    if (HasFailure()) return;
  }
}

}  // namespace
}  // namespace tavrel::host
