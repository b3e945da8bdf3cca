#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "host/output/PercentEscaping.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

using namespace std::string_literals;

constexpr const char* kReplacement = "\xEF\xBF\xBD";

TEST(Text, PlainTextStaysAsItIs) {
  EXPECT_EQ(Clean("Má vlast – Vltava"), "Má vlast – Vltava");
  EXPECT_EQ(Clean(""), "");
}

TEST(Text, ControlCharactersGo) {
  std::string all;
  for (char byte = 1; byte < 0x20; ++byte) {
    if (byte < '\t' || byte > '\r') all += byte;
  }
  EXPECT_EQ(Clean("a" + all + "\x7F" + "b"), "ab");
  EXPECT_EQ(Clean("a\0b"s), "ab");
  EXPECT_EQ(Clean("\x1b[31mred\x1b[0m"), "[31mred[0m");
}

TEST(Text, C1ControlCharactersGo) {
  for (int code = 0x80; code <= 0x9F; ++code) {
    if (code == 0x85) continue;  // a line end
    const std::string control{'\xC2', static_cast<char>(code)};
    EXPECT_EQ(Clean("a" + control + "b"), "ab") << code;
  }
}

TEST(Text, TabsAndLineEndsBecomeBlanks) {
  EXPECT_EQ(Clean("a\tb\nc\rd\ve\ff"), "a b c d e f");
  EXPECT_EQ(Clean("a\xC2\x85"
                  "b\u2028c\u2029d"),
            "a b c d");
}

TEST(Text, ALineBreakWithTheBlanksAroundItBecomesOneBlank) {
  EXPECT_EQ(Clean("a\r\nb"), "a b");
  EXPECT_EQ(Clean("first \n\n\t\t  second"), "first second");
  EXPECT_EQ(Clean("a\xC2\x85 \u2028b"), "a b");
  EXPECT_EQ(Clean("two  blanks"), "two  blanks") << "which are no line break";
  std::string before = "before ";
  EXPECT_EQ(AppendClean(before, "\n\nx"), 2u) << "only blanks of the text itself are joined";
  EXPECT_EQ(before, "before  x");
}

TEST(Text, MarksThatReorderTextGo) {
  EXPECT_EQ(Clean("a\u202Eb\u202Cc\u2066d\u2069e"), "abcde");
  EXPECT_EQ(Clean("a\u061Cb\u200Ec\u200Fd"), "abcd");
}

TEST(Text, CharactersThatShowNothingGo) {
  EXPECT_EQ(Clean("a\u200Bb\u2060c\u2064d\uFEFFe\u206Ff\uFFF9g"), "abcdefg");
  EXPECT_EQ(Clean("\U0001F3F4\U000E0067\U000E0062\U000E007F."), "\U0001F3F4.") << "tags";
  EXPECT_EQ(Clean("a\U000E0001b\U000E0FFFc\uFFF0d\u2065"), "abcd");
}

TEST(Text, WhatIsPartOfHowATextIsWrittenStays) {
  for (const char* text : {"\u0646\u0645\u06CC\u200C\u062E\u0648\u0627\u0647\u0645",  // non-joiner
                           "\U0001F468\u200D\U0001F467",                              // joiner
                           "\u2764\uFE0F", "\u845B\U000E0100",  // variation selectors
                           "zusammen\u00ADgesetzt", "\u180E", "\u0600\u0661"}) {
    EXPECT_EQ(Clean(text), text);
  }
}

TEST(Text, MarksPileUpToAHeightOnly) {
  const auto marks = [](std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += "\u0301";
    return text;
  };
  EXPECT_EQ(Clean("e" + marks(30) + "x" + marks(30)), "e" + marks(30) + "x" + marks(30));
  EXPECT_EQ(Clean("e" + marks(31)), "e" + marks(30));
  EXPECT_EQ(Clean("\u4E00" + marks(5000) + "e\u0301"), "\u4E00" + marks(30) + "e\u0301");
  EXPECT_EQ(Clean(marks(100) + "\u200B" + marks(100)), marks(30)) << "across what goes";
}

TEST(Text, EachByteThatIsNotUtf8BecomesAReplacementCharacter) {
  const std::string one = kReplacement;
  EXPECT_EQ(Clean("caf\xE9"), "caf" + one);
  EXPECT_EQ(Clean("\x9B[31m"), one + "[31m");
  EXPECT_EQ(Clean("\xC0\xAF"), one + one);
  EXPECT_EQ(Clean("\xED\xA0\x80"), one + one + one);
  EXPECT_EQ(Clean("\xE3\x81"), one + one);
  EXPECT_EQ(Clean("\xF4\x90\x80\x80"), one + one + one + one);
}

TEST(Text, WideCharactersTakeTwoColumns) {
  EXPECT_EQ(Width("交響曲"), 6u);
  EXPECT_EQ(Width("교향곡"), 6u);
  EXPECT_EQ(Width("ＡＢ"), 4u);
  EXPECT_EQ(Width("ｱｲ"), 2u);
}

TEST(Text, CombiningCharactersTakeNoColumn) {
  EXPECT_EQ(Width("Dvor\u030Ca\u0301k"), 6u);
  EXPECT_EQ(Width("か\u3099"), 2u);
  EXPECT_EQ(Width("\u1100\u1161\u11A8"), 2u) << "a decomposed Hangul syllable";
}

TEST(Text, CleaningTellsTheWidth) {
  for (const std::string text :
       {"", "Nimrod", "Dvor\u030Ca\u0301k", "交響曲\t\x1b第\xE9", "a \r\n b", "\u202E"}) {
    std::string clean = "before ";
    const std::size_t width = AppendClean(clean, text);
    EXPECT_EQ(width, Width(clean) - 7) << text;
  }
}

TEST(Text, PrefixNeverSplitsAWideCharacter) {
  EXPECT_EQ(Prefix("交響曲", 4), "交響");
  EXPECT_EQ(Prefix("交響曲", 5), "交響");
  EXPECT_EQ(Prefix("交響曲", 1), "");
  EXPECT_EQ(Prefix("Nimrod", 6), "Nimrod");
  EXPECT_EQ(Prefix("Nimrod", 0), "");
}

TEST(Text, PrefixKeepsCombiningMarksWithTheirBase) {
  EXPECT_EQ(Prefix("or\u030Ca\u0301k", 2), "or\u030C");
}

TEST(Text, SuffixBeginsWithAWholeCharacter) {
  EXPECT_EQ(Suffix("交響曲", 4), "響曲");
  EXPECT_EQ(Suffix("交響曲", 5), "響曲");
  EXPECT_EQ(Suffix("交響曲", 1), "");
  EXPECT_EQ(Suffix("Nimrod", 6), "Nimrod");
  EXPECT_EQ(Suffix("Nimrod", 0), "");
  EXPECT_EQ(Suffix("or\u030Ca\u0301k", 2), "a\u0301k");
  EXPECT_EQ(Suffix("or\u030Ck", 1), "k") << "a mark does not stand without its base";
}

TEST(Text, FoldingEqualsCaseAndComposition) {
  EXPECT_EQ(Fold("DVOŘÁK"), Fold("dvor\u030Ca\u0301k"));
  EXPECT_EQ(Fold("STRASSE"), Fold("Straße"));
  EXPECT_EQ(Fold("ЧАЙКОВСКИЙ"), Fold("чайковский"));
  EXPECT_NE(Fold("Dvořák"), Fold("Dvorak"));
  EXPECT_EQ(Fold("caf\xE9"), Fold("CAF\xE9"));
}

TEST(Text, ComposingJoinsAccents) {
  EXPECT_EQ(Compose("Dvor\u030Ca\u0301k"), "Dvořák");
  EXPECT_EQ(Compose("Nimrod"), "Nimrod");
  EXPECT_EQ(Compose("\xE9\x1b"), kReplacement);
}

TEST(Text, InAnAddressAllButLettersDigitsAndTheMarksThatAreNamedIsEscaped) {
  EXPECT_EQ(PercentEscaped("AZaz09/-._~", "/-._~"), "AZaz09/-._~");
  EXPECT_EQ(PercentEscaped("a/b-c", ""), "a%2Fb%2Dc");
  EXPECT_EQ(PercentEscaped("@[`{:"s + '\0' + "\xFF\u00E9", ""), "%40%5B%60%7B%3A%00%FF%C3%A9");
}

}  // namespace
}  // namespace tavrel::host
