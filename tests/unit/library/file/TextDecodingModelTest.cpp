// The decoder beside its literal form, on many random texts and sizes.
#include <gtest/gtest.h>

#include <string>

#include "agent/Exports.h"
#include "tests/reference/LiteralXmlText.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"

namespace {

void Compare(tavrel::test::Random& random, const std::string& source) {
  const auto longest = source.size() + 3;
  const auto size = static_cast<std::int32_t>(random.Below(longest + 1)) - 1;
  std::string expected(longest, '~');
  std::string actual(longest, '~');
  const std::int32_t expectedResult =
      tavrel::reference::LiteralXmlText(expected.data(), size).Decode(source.c_str());
  ASSERT_EQ(RestoreXMLEscChar(actual.data(), source.c_str(), size), expectedResult)
      << source << " into " << size;
  ASSERT_EQ(actual, expected) << source << " into " << size;
}

}  // namespace

TEST(RestoreXMLEscChar, AgreesWithAModelOnRandomTexts) {
  tavrel::test::Random random(1905);
  const tavrel::test::CapturedStderr log;
  for (int i = 0; i < tavrel::test::Rounds(60000); ++i) {
    Compare(random,
            random.Text({"&", ";", "#", "x",  "X",    "0",     "1",  "9",   "a",     "F",  "g",
                         " ", "-", "+", "lt", "&lt;", "&amp;", "&#", "&#x", "&#65;", "\t", "\xE9"},
                        random.Below(12)));
    if (HasFatalFailure()) return;
  }
}

TEST(RestoreXMLEscChar, AgreesWithAModelOnRandomNumbers) {
  tavrel::test::Random random(2019);
  const tavrel::test::CapturedStderr log;
  for (int i = 0; i < tavrel::test::Rounds(60000); ++i) {
    Compare(random,
            "&#" + random.Text({"x", "X", "0x", " ", "-", "+", ""}, random.Below(4)) +
                random.Text({"0", "1", "2", "7", "9", "a", "E", "f", "18446744073709551615"},
                            random.Below(24)) +
                ";");
    if (HasFatalFailure()) return;
  }
}
