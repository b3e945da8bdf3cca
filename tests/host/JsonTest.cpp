#include <gtest/gtest.h>

#include "host/output/Json.h"
#include "tests/host/Fixture.h"
#include "tests/support/Json.h"
#include "text/Utf8.h"

namespace tavrel::host {
namespace {

using test::HostTest;
using test::Json;
using test::Outcome;

TEST(Json, AMissingTextIsNull) {
  EXPECT_EQ((JsonObject{{"name", kJsonNull}}.Text()), R"({"name":null})");
  EXPECT_EQ((JsonObject{{"name", ""}}.Text()), R"({"name":""})");
}

TEST(Json, EveryPairOfBytesGivesValidUtf8) {
  for (int first = 0; first < 256; ++first) {
    std::vector<std::string> texts;
    JsonArray array;
    for (int second = 0; second < 256; ++second) {
      texts.push_back({static_cast<char>(first), static_cast<char>(second)});
      array.Add(texts.back());
    }
    const std::string line = array.Text();
    ASSERT_TRUE(text::IsValidUtf8(line)) << first;
    for (const char byte : line) ASSERT_GE(static_cast<unsigned char>(byte), 0x20);
    const Json parsed = Json::Parse(line);
    for (std::size_t second = 0; second < 256; ++second) {
      if (!text::IsValidUtf8(texts[second])) continue;
      ASSERT_EQ(parsed[second], texts[second]) << first << ' ' << second;
    }
  }
}

TEST(Json, ControlCharactersAreEscaped) {
  EXPECT_EQ(JsonValue("\x1b[31m\x7F\xC2\x9B|\xC2\xA0").Text(),
            "\"\\u001b[31m\\u007f\\u009b|\xC2\xA0\"");
}

TEST(Json, WhatNobodySeesIsEscaped) {
  EXPECT_EQ(JsonValue("a\u202Eb\u2066c\u200Fd\u200Be\u2028f\uFEFF").Text(),
            R"("a\u202eb\u2066c\u200fd\u200be\u2028f\ufeff")");
  EXPECT_EQ(JsonValue("\U0001F3F4\U000E0067\U000E007F").Text(),
            "\"\U0001F3F4\\udb40\\udc67\\udb40\\udc7f\"");
  const std::string text = "\u061C\U000E0001\u2029 \u200D";
  EXPECT_EQ(Json::Parse(JsonValue(text).Text()), text) << "readers get what was there";
}

TEST(Json, ValuesStandInValuesAsTheyAreNamed) {
  JsonArray array;
  EXPECT_EQ(array.Text(), "[]");
  array.Add(std::int64_t{-9000000000});
  array.Add(JsonObject{{"z", true}, {"a", std::optional<std::string>("x")}});
  JsonObject object{{"list", array}};
  object.Add({"last", 7u});
  EXPECT_EQ(object.Text(), R"({"list":[-9000000000,{"z":true,"a":"x"}],"last":7})");
}

class JsonOutput : public HostTest {};

TEST_F(JsonOutput, IsValidWhateverTheFileHolds) {
  // &#233; is the lone byte E9 on purpose.
  const std::string file =
      Write("library.xml",
            test::LibraryText({{1, test::Property("Name", "caf&#233; \"\x1b\\ \xC2\x9B") +
                                       test::Property("Album", "&#10;&#237;&#160;&#128;")}}));
  const Outcome songs = Run({"--library", file, "songs", "--all", "--json"});
  EXPECT_EQ(songs.exitCode, 0) << songs.errors;
  EXPECT_TRUE(text::IsValidUtf8(songs.output));
  const Json parsed = Json::Parse(songs.output);
  ASSERT_EQ(parsed.size(), 1u);
  EXPECT_EQ(parsed[0]["name"], "caf\xEF\xBF\xBD \"\x1b\\ \xC2\x9B");
  EXPECT_TRUE(parsed[0]["artist"].IsNull());
  EXPECT_TRUE(parsed[0]["location"].IsNull());
  EXPECT_TRUE(parsed[0]["seconds"].IsNull());
  EXPECT_EQ(parsed[0]["movie"], false);

  const Outcome overview = Run({"--library", file, "--json"});
  EXPECT_EQ(overview.exitCode, 0) << overview.errors;
  EXPECT_EQ(Json::Parse(overview.output)["songs"], 1);
}

TEST_F(JsonOutput, AListWithoutElementsIsAnEmptyArray) {
  const std::string file = Write("library.xml", test::LibraryText({}));
  EXPECT_EQ(Run({"--library", file, "songs", "--all", "--json"}).output, "[]\n");
}

TEST_F(JsonOutput, HasOneElementALine) {
  const std::string file = Write("library.xml", test::LibraryText({{1, ""}, {2, ""}, {3, ""}}));
  const Outcome songs = Run({"--library", file, "songs", "--all", "--json"});
  EXPECT_EQ(test::Lines(songs.output).size(), 5u) << songs.output;
}

TEST_F(JsonOutput, APathThatIsNotUtf8IsShownAllTheSame) {
  const std::string file = Write("caf\xE9.xml", test::LibraryWithName("Nimrod"));
  const Outcome overview = Run({"--library", file, "--json"});
  EXPECT_EQ(overview.exitCode, 0) << overview.errors;
  EXPECT_TRUE(text::IsValidUtf8(overview.output));
  EXPECT_TRUE(Json::Parse(overview.output)["library"].Text().ends_with("caf\uFFFD.xml"));
}

}  // namespace
}  // namespace tavrel::host
