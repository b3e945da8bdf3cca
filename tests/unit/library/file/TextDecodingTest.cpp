#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "agent/Exports.h"
#include "library/file/XmlText.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/GuardedPages.h"

using tavrel::test::CapturedStderr;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// What a call left behind: a buffer of 64 '#' of which `size` bytes may be used.
struct Decoding {
  std::int32_t result;
  std::string buffer;
};

Decoding Decode(const std::string& source, std::int32_t size) {
  Decoding decoded{0, std::string(64, '#')};
  decoded.result = RestoreXMLEscChar(decoded.buffer.data(), source.c_str(), size);
  return decoded;
}

// The decoded text, with the whole room that callers give: the source's length plus 1.
std::string Restored(const std::string& source) {
  std::string buffer(source.size() + 1, '#');
  const std::int32_t result =
      RestoreXMLEscChar(buffer.data(), source.c_str(), static_cast<std::int32_t>(buffer.size()));
  EXPECT_EQ(buffer[static_cast<std::size_t>(result)], '\0') << source;
  return buffer.substr(0, static_cast<std::size_t>(result));
}

std::string TextOf(std::initializer_list<int> values) {
  std::string bytes;
  for (const int value : values) bytes += static_cast<char>(value);
  return bytes;
}

// The log messages of decoding a text in error, whose result must be 0.
std::vector<std::string> MessagesOf(const std::string& source) {
  const CapturedStderr log;
  EXPECT_EQ(Decode(source, 64).result, 0) << source;
  return log.Messages();
}

}  // namespace

TEST(RestoreXMLEscChar, CopiesATextWithoutReferences) {
  EXPECT_EQ(Restored("plain text"), "plain text");
  EXPECT_EQ(Restored(""), "");
  EXPECT_EQ(Restored("a;b#c;;"), "a;b#c;;");
  EXPECT_EQ(Restored("caf\u00e9 \u65e5\u672c \xFF\x80"), "caf\u00e9 \u65e5\u672c \xFF\x80");
}

TEST(RestoreXMLEscChar, DecodesTheFiveNames) {
  EXPECT_EQ(Restored("&lt;&gt;&amp;&apos;&quot;"), "<>&'\"");
  EXPECT_EQ(Restored("a &amp; b"), "a & b");
  EXPECT_EQ(Restored("&quot;x&quot;"), "\"x\"");
}

TEST(RestoreXMLEscChar, DecodesOncePerText) {
  EXPECT_EQ(Restored("&amp;amp;"), "&amp;");
  EXPECT_EQ(Restored("&#38;lt;"), "&lt;");
}

TEST(RestoreXMLEscChar, DecodesHexadecimalAndDecimalReferences) {
  EXPECT_EQ(Restored("AC&#x2F;DC"), "AC/DC");
  EXPECT_EQ(Decode("AC&#x2F;DC", 64).result, 5);
  EXPECT_EQ(Restored("&#38;&#60;&#62;"), "&<>");
  EXPECT_EQ(Restored("&#x2f;&#X2F;&#x2F;"), "///");
}

TEST(RestoreXMLEscChar, WritesTheBareBytesOfAValueAndNotUtf8) {
  EXPECT_EQ(Restored("&#233;"), "\xE9");
  EXPECT_EQ(Restored("&#8217;"), "\x20\x19");
  EXPECT_EQ(Restored("&#256;"), "\x01");
  EXPECT_EQ(Restored("&#0;"), "");
  EXPECT_EQ(Restored("a&#0;b&#x0;c"), "abc");
  EXPECT_EQ(Restored("&#x10FFFF;"), TextOf({0x10, 0xFF, 0xFF}));
  EXPECT_EQ(Restored("&#x01000200;"), "\x01\x02");
  EXPECT_EQ(Restored("&#x12345678;"), "\x12\x34\x56\x78");
}

TEST(RestoreXMLEscChar, IgnoresWhatStandsBetweenTheNumberAndItsEnd) {
  EXPECT_EQ(Restored("&#65letters;"), "A");
  EXPECT_EQ(Restored("&#65 66;"), "A");
  EXPECT_EQ(Restored("&#x41xyz;"), "A");
  EXPECT_EQ(Restored("&#65&#66;"), "A");
  EXPECT_EQ(Restored("&#65.9;"), "A");
}

TEST(RestoreXMLEscChar, TakesANumberWithoutDigitsAsZero) {
  EXPECT_EQ(Restored("[&#letters;]"), "[]");
  EXPECT_EQ(Restored("[&#x;]"), "[]");
  EXPECT_EQ(Restored("[&#xg;]"), "[]");
  EXPECT_EQ(Restored("[&# ;]"), "[]");
  EXPECT_EQ(Restored("[&#-;]"), "[]");
  EXPECT_EQ(Restored("[&#+;]"), "[]");
}

TEST(RestoreXMLEscChar, SkipsBlanksBeforeANumber) {
  EXPECT_EQ(Restored("&# \t\n\v\f\r65;"), "A");
  EXPECT_EQ(Restored("&#x \t41;"), "A");
  EXPECT_EQ(Restored("[&# x41;]"), "[]");  // the 'x' counts only right behind the '#'
  EXPECT_EQ(Restored("[&#\xA0"
                     "65;]"),
            "[]");
}

TEST(RestoreXMLEscChar, TakesASignAndNegatesModulo64Bits) {
  EXPECT_EQ(Restored("&#+65;"), "A");
  EXPECT_EQ(Restored("&#-1;"), "\xFF\xFF\xFF\xFF");
  EXPECT_EQ(Restored("&#-191;"), TextOf({0xFF, 0xFF, 0xFF, 0x41}));
  EXPECT_EQ(Restored("&#x-1;"), "\xFF\xFF\xFF\xFF");
  EXPECT_EQ(Restored("&#x +41;"), "A");
  EXPECT_EQ(Restored("&#-18446744073709551551;"), "A");
  EXPECT_EQ(Restored("[&#- 65;]"), "[]");
  EXPECT_EQ(Restored("[&#--65;]"), "[]");
  EXPECT_EQ(Restored("[&#+-65;]"), "[]");
}

TEST(RestoreXMLEscChar, SkipsAHexadecimalPrefixBehindTheX) {
  EXPECT_EQ(Restored("&#x0x41;"), "A");
  EXPECT_EQ(Restored("&#X0X41;"), "A");
  EXPECT_EQ(Restored("&#x -0xBF;"), TextOf({0xFF, 0xFF, 0xFF, 0x41}));
  EXPECT_EQ(Restored("[&#x0x;]"), "[]");
  EXPECT_EQ(Restored("[&#x0xg1;]"), "[]");
  EXPECT_EQ(Restored("[&#x0x0x41;]"), "[]");
  EXPECT_EQ(Restored("[&#0x41;]"), "[]");  // decimal: the number ends at the 'x'
}

TEST(RestoreXMLEscChar, TakesTheLow32BitsOfANumber) {
  EXPECT_EQ(Restored("&#4294967361;"), "A");
  EXPECT_EQ(Restored("&#x100000041;"), "A");
  EXPECT_EQ(Restored("[&#4294967296;]"), "[]");
  EXPECT_EQ(Restored("&#x0000000000000000000000000041;"), "A");
}

TEST(RestoreXMLEscChar, ClampsANumberBeyond64Bits) {
  EXPECT_EQ(Restored("&#18446744073709551615;"), "\xFF\xFF\xFF\xFF");
  EXPECT_EQ(Restored("&#18446744073709551616;"), "\xFF\xFF\xFF\xFF");
  EXPECT_EQ(Restored("&#99999999999999999999999;"), "\xFF\xFF\xFF\xFF");
  EXPECT_EQ(Restored("&#x10000000000000000;"), "\xFF\xFF\xFF\xFF");
  EXPECT_EQ(Restored("&#-18446744073709551616;"),
            "\xFF\xFF\xFF\xFF");  // the clamp keeps no sign
  EXPECT_EQ(Restored("&#-18446744073709551615;"), "\x01");
}

// ---- Errors
// ---------------------------------------------------------------------------------------

TEST(RestoreXMLEscChar, LogsTheWholeTextOfAReferenceWithoutAnEnd) {
  EXPECT_THAT(MessagesOf("before & behind"),
              ElementsAre("XML text \"before & behind\" Escaping has no ending"));
  EXPECT_THAT(MessagesOf("&amp; then &amp"),
              ElementsAre("XML text \"&amp; then &amp\" Escaping has no ending"));
  EXPECT_THAT(MessagesOf("; &"), ElementsAre("XML text \"; &\" Escaping has no ending"));
  EXPECT_THAT(MessagesOf("&#65"), ElementsAre("XML text \"&#65\" Escaping has no ending"));
}

TEST(RestoreXMLEscChar, LogsTheTextFromAnUnknownReferenceOn) {
  EXPECT_THAT(MessagesOf("a&nbsp;b &amp; c"),
              ElementsAre("XML text \"&nbsp;b &amp; c\" Escaping has no numeric"));
  EXPECT_THAT(MessagesOf("&lt;&eacute;"),
              ElementsAre("XML text \"&eacute;\" Escaping has no numeric"));
  EXPECT_THAT(MessagesOf("AT&T; x"), ElementsAre("XML text \"&T; x\" Escaping has no numeric"));
}

TEST(RestoreXMLEscChar, ComparesNamesExactlyAndWhole) {
  for (const char* name :
       {"&LT;", "&Amp;", "&l t;", "& lt;", "&lt ;", "&ampx;", "&;", "&a;", "&lt&gt;", "&am;p;"}) {
    EXPECT_THAT(MessagesOf(name),
                ElementsAre(std::string("XML text \"") + name + "\" Escaping has no numeric"));
  }
}

TEST(RestoreXMLEscChar, NeedsThreeBytesUpToTheEndOfANumber) {
  EXPECT_THAT(MessagesOf("&#;"), ElementsAre("XML text \"&#;\" Escaping has no numeric"));
  EXPECT_THAT(MessagesOf("&#;65;"), ElementsAre("XML text \"&#;65;\" Escaping has no numeric"));
  EXPECT_THAT(MessagesOf("&;#65;"), ElementsAre("XML text \"&;#65;\" Escaping has no numeric"));
  EXPECT_THAT(MessagesOf("&x65;"), ElementsAre("XML text \"&x65;\" Escaping has no numeric"));
  EXPECT_EQ(Restored("&#9;"), "\t");
}

TEST(RestoreXMLEscChar, TakesTextsForNoFormat) {
  EXPECT_THAT(MessagesOf("100%s %n %d &x;"),
              ElementsAre("XML text \"&x;\" Escaping has no numeric"));
  EXPECT_THAT(MessagesOf("%s%n%x &"), ElementsAre("XML text \"%s%n%x &\" Escaping has no ending"));
}

TEST(RestoreXMLEscChar, LogsTextsOfAnyLengthInOneLine) {
  const std::string text(300000, 'x');
  const CapturedStderr log;
  std::string buffer(text.size() + 2, '#');
  EXPECT_EQ(RestoreXMLEscChar(buffer.data(), (text + "&").c_str(),
                              static_cast<std::int32_t>(buffer.size())),
            0);
  EXPECT_THAT(log.Messages(), ElementsAre("XML text \"" + text + "&\" Escaping has no ending"));
}

TEST(RestoreXMLEscChar, LeavesWhatWasDecodedBeforeAnErrorUnterminated) {
  const CapturedStderr log;
  const std::string rest(59, '#');
  EXPECT_EQ(Decode("a&lt;b&#65;c & d", 64).buffer, "a<bAc " + std::string(58, '#'));
  EXPECT_EQ(Decode("a&lt;bcd&nbsp;e", 64).buffer, "a<bcd" + rest);
  EXPECT_EQ(Decode("&", 64).buffer, std::string(64, '#'));
}

TEST(RestoreXMLEscChar, LogsNothingForAGoodText) {
  const CapturedStderr log;
  EXPECT_EQ(Decode("a &amp; &#65; ; b", 64).result, 9);
  EXPECT_EQ(Decode("too long for its room &amp;", 2).result, 23);
  EXPECT_THAT(log.Messages(), IsEmpty());
}

// ---- Room
// -----------------------------------------------------------------------------------------

TEST(RestoreXMLEscChar, WritesThePiecesThatFitAndNothingElse) {
  const std::string source = "ab&amp;cd&#8217;ef&#x41;";
  const std::vector<std::string> pieces = {"ab", "&", "cd", "\x20", "\x19", "ef", "A", ""};
  const std::int32_t length = 10;
  for (std::int32_t size = -2; size <= length + 3; ++size) {
    std::string expected;
    std::int32_t total = 0;
    for (const std::string& piece : pieces) {
      total += static_cast<std::int32_t>(piece.size());
      if (total < size) expected += piece;
    }
    if (length < size) expected += '\0';
    expected.resize(64, '#');
    const Decoding decoded = Decode(source, size);
    EXPECT_EQ(decoded.result, length) << size;
    EXPECT_EQ(decoded.buffer, expected) << size;
  }
}

TEST(RestoreXMLEscChar, WritesNoTerminatorIntoABufferOfTheDecodedLength) {
  const Decoding decoded = Decode("a &amp; b", 5);
  EXPECT_EQ(decoded.result, 5);
  EXPECT_EQ(decoded.buffer, "a &" + std::string(61, '#'));
}

TEST(RestoreXMLEscChar, NeverMakesATextLonger) {
  for (const char* source : {"&lt;", "&#9;", "&#x9;", "&#-1;", "&#99;", "&#x1234;", "a", ""}) {
    EXPECT_LE(Restored(source).size(), std::string_view(source).size()) << source;
  }
}

TEST(RestoreXMLEscChar, ReadsAndWritesNothingOutsideItsTexts) {
  tavrel::test::GuardedPages sources(64);
  tavrel::test::GuardedPages destinations(64);
  const CapturedStderr log;
  for (const char* text : {"", "a", "&", "a&", "&a", "&#", "&#x", "&#6", "&amp", "&amp;", "a&#65;",
                           "&;", "&#;", "&#x;", "&#0;", "&lt;&gt;", "x&quot;y"}) {
    const char* source = sources.PlaceAtEnd(text);
    const auto length = static_cast<std::int32_t>(std::string_view(text).size());
    char* destination = destinations.PlaceAtEnd(text);  // room for the length plus 1, and no more
    EXPECT_LE(RestoreXMLEscChar(destination, source, length + 1), length);
  }
}

TEST(RestoreXMLEscChar, SurvivesNullArguments) {
  char buffer[4] = "abc";
  const CapturedStderr log;
  EXPECT_EQ(RestoreXMLEscChar(buffer, nullptr, 4), 0);
  EXPECT_EQ(RestoreXMLEscChar(nullptr, "abc", 4), 0);
  EXPECT_EQ(RestoreXMLEscChar(nullptr, nullptr, 4), 0);
  EXPECT_STREQ(buffer, "abc");
  EXPECT_EQ(log.Text(), "");
}

TEST(XMLEntities, StandInTheOrderOfTheirSearch) {
  const char* const expected[5][2] = {
      {"&lt;", "<"}, {"&gt;", ">"}, {"&amp;", "&"}, {"&apos;", "'"}, {"&quot;", "\""}};
  for (int i = 0; i < 5; ++i) {
    EXPECT_STREQ(XMLEntities[i].entity, expected[i][0]);
    EXPECT_STREQ(XMLEntities[i].replacement, expected[i][1]);
  }
}
