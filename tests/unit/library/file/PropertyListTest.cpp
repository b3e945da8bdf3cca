#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstring>
#include <deque>
#include <optional>
#include <string>

#include "agent/Exports.h"
#include "library/file/PropertyList.h"
#include "library/file/PropertyValue.h"
#include "tests/support/CapturedStderr.h"

using tavrel::test::CapturedStderr;
using testing::ElementsAre;

namespace {

constexpr std::int32_t kUnwritten = 0x5A5A5A5A;

// A dictionary made by hand, element by element.
class Dictionary {
 public:
  Dictionary() = default;
  Dictionary(const Dictionary&) = delete;
  Dictionary& operator=(const Dictionary&) = delete;

  // Text: none for an element without character data.
  Dictionary& Add(const char* name, std::optional<std::string> text) {
    TBXMLElement& element = elements_.emplace_back();
    element.name = Keep(name);
    if (text) element.text = Keep(*text);
    if (elements_.size() == 1) {
      dict_.firstChild = &element;
    } else {
      TBXMLElement& previous = elements_[elements_.size() - 2];
      previous.nextSibling = &element;
      element.previousSibling = &previous;
    }
    return *this;
  }
  Dictionary& Pair(const std::string& key, const char* type, std::optional<std::string> value) {
    return Add("key", key).Add(type, std::move(value));
  }

  [[nodiscard]] const TBXMLElement* get() const { return &dict_; }
  [[nodiscard]] TBXMLElement& at(std::size_t index) { return elements_[index]; }

 private:
  char* Keep(const std::string& text) { return texts_.emplace_back(text).data(); }

  TBXMLElement dict_ = {};
  std::deque<TBXMLElement> elements_;
  std::deque<std::string> texts_;
};

// Everything that a call gave. The text's memory is released as a caller releases it.
struct Read {
  std::int32_t result = 0;
  std::int32_t value = kUnwritten;
  std::optional<std::string> text;

  friend bool operator==(const Read&, const Read&) = default;
  friend void PrintTo(const Read& read, std::ostream* stream) {
    *stream << read.result << ", value " << read.value << ", text " << read.text.value_or("(none)");
  }
};

Read ReadFrom(const TBXMLElement* dict, const char* key, std::int32_t flags) {
  Read read;
  char* text = nullptr;
  read.result = ReadSongProp(dict, key, &text, &read.value, flags);
  if (text != nullptr) read.text = text;
  free(text);
  return read;
}

// The same of a dictionary whose only pair is K and a text.
Read CallOn(const std::string& value, std::int32_t flags) {
  return ReadFrom(Dictionary().Pair("K", "string", value).get(), "K", flags);
}

constexpr std::int32_t kInteger = 0;
constexpr std::int32_t kText = SONGPROP_TEXT;
constexpr std::int32_t kUrl = SONGPROP_TEXT | SONGPROP_URL;

}  // namespace

TEST(ReadSongProp, HasTheFlagValuesThatHostsPass) {
  EXPECT_EQ(SONGPROP_TEXT, 2);
  EXPECT_EQ(SONGPROP_URL, 4);
}

TEST(ReadSongProp, TouchesNothingWithoutAKeyOrAValue) {
  Dictionary dict;
  dict.Pair("K", "string", "text");
  std::int32_t value = kUnwritten;
  char mine[] = "mine";
  char* text = mine;
  EXPECT_EQ(ReadSongProp(dict.get(), nullptr, &text, &value, kText), 0);
  EXPECT_EQ(ReadSongProp(dict.get(), "K", &text, nullptr, kText), 0);
  EXPECT_EQ(ReadSongProp(nullptr, "K", &text, &value, kText), 0);
  EXPECT_EQ(ReadSongProp(nullptr, nullptr, nullptr, nullptr, kText), 0);
  EXPECT_EQ(value, kUnwritten);
  EXPECT_EQ(text, mine);
}

TEST(ReadSongProp, TouchesNothingForAMissingKey) {
  const Read nothing;
  for (const std::int32_t flags : {kInteger, kText, kUrl}) {
    EXPECT_EQ(ReadFrom(Dictionary().get(), "K", flags), nothing);
    EXPECT_EQ(ReadFrom(Dictionary().Pair("Name", "string", "x").get(), "name", flags), nothing);
    EXPECT_EQ(ReadFrom(Dictionary().Pair("Name", "string", "x").get(), "Nam", flags), nothing);
    EXPECT_EQ(ReadFrom(Dictionary().Pair("Nam", "string", "x").get(), "Name", flags), nothing);
    EXPECT_EQ(ReadFrom(Dictionary().Pair("Name", "string", "x").get(), "", flags), nothing);
  }
}

TEST(ReadSongProp, TakesAKeyWithoutAValueBehindItAsMissing) {
  EXPECT_EQ(ReadFrom(Dictionary().Add("key", "K").get(), "K", kText), Read());
  Dictionary dict;
  dict.Pair("A", "string", "a").Add("key", "K");
  EXPECT_EQ(ReadFrom(dict.get(), "K", kText), Read());
}

TEST(ReadSongProp, LooksAtEveryOtherChildOnly) {
  Dictionary dict;
  dict.Pair("A", "string", "K").Pair("K", "string", "right");
  EXPECT_EQ(ReadFrom(dict.get(), "K", kText).text, "right");
  Dictionary shifted;
  shifted.Add("string", "x").Add("key", "K").Add("string", "never");
  EXPECT_EQ(ReadFrom(shifted.get(), "K", kText), Read());
}

TEST(ReadSongProp, TakesTheFirstPairOfAKey) {
  Dictionary dict;
  dict.Pair("K", "integer", "1").Pair("K", "integer", "2");
  EXPECT_EQ(ReadFrom(dict.get(), "K", kInteger).value, 1);
  Dictionary booleanFirst;
  booleanFirst.Pair("K", "false", std::nullopt).Pair("K", "string", "x");
  EXPECT_EQ(ReadFrom(booleanFirst.get(), "K", kText), (Read{0, 0, std::nullopt}));
}

TEST(ReadSongProp, LooksAtNoElementNamesButThoseOfBooleans) {
  Dictionary dict;
  dict.Add("whatever", "K").Add("date", "42 and more");
  EXPECT_EQ(ReadFrom(dict.get(), "K", kInteger), (Read{11, 42, std::nullopt}));
  EXPECT_EQ(ReadFrom(dict.get(), "K", kText), (Read{11, 12, "42 and more"}));
  dict.at(0).name = nullptr;
  dict.at(1).name = nullptr;
  EXPECT_EQ(ReadFrom(dict.get(), "K", kText), (Read{11, 12, "42 and more"}));
}

TEST(ReadSongProp, PassesOverElementsWithoutAText) {
  Dictionary dict;
  dict.Add("key", std::nullopt).Add("string", "x").Pair("K", "string", "y");
  EXPECT_EQ(ReadFrom(dict.get(), "K", kText).text, "y");
  EXPECT_EQ(ReadFrom(dict.get(), "", kText), Read());
}

TEST(ReadSongProp, FindsAnEmptyKey) {
  EXPECT_EQ(ReadFrom(Dictionary().Pair("", "string", "x").get(), "", kText).text, "x");
}

TEST(ReadSongProp, ReadsBooleansBeforeItLooksAtTheFlags) {
  for (const std::int32_t flags : {kInteger, kText, kUrl, 4, 8}) {
    EXPECT_EQ(ReadFrom(Dictionary().Pair("K", "true", std::nullopt).get(), "K", flags),
              (Read{0, 1, std::nullopt}));
    EXPECT_EQ(ReadFrom(Dictionary().Pair("K", "false", std::nullopt).get(), "K", flags),
              (Read{0, 0, std::nullopt}));
    EXPECT_EQ(ReadFrom(Dictionary().Pair("K", "true", "a text inside").get(), "K", flags),
              (Read{0, 1, std::nullopt}));
  }
}

TEST(ReadSongProp, KnowsBooleansByTheirExactName) {
  EXPECT_EQ(ReadFrom(Dictionary().Pair("K", "True", "5").get(), "K", kInteger).value, 5);
  EXPECT_EQ(ReadFrom(Dictionary().Pair("K", "true ", "5").get(), "K", kInteger).value, 5);
  EXPECT_EQ(ReadFrom(Dictionary().Pair("K", "falsehood", "5").get(), "K", kInteger).value, 5);
  EXPECT_EQ(CallOn("true", kInteger), (Read{4, 0, std::nullopt}));
}

TEST(ReadSongProp, StoresZeroForAValueWithoutText) {
  for (const std::int32_t flags : {kInteger, kText, kUrl}) {
    EXPECT_EQ(ReadFrom(Dictionary().Pair("K", "string", std::nullopt).get(), "K", flags),
              (Read{0, 0, std::nullopt}));
  }
}

TEST(ReadSongProp, ReadsNumbersAndAnswersTheLengthOfTheirText) {
  EXPECT_EQ(CallOn("206794", kInteger), (Read{6, 206794, std::nullopt}));
  EXPECT_EQ(CallOn(" -12 apples", kInteger), (Read{11, -12, std::nullopt}));
  EXPECT_EQ(CallOn("none", kInteger), (Read{4, 0, std::nullopt}));
  EXPECT_EQ(CallOn("", kInteger), (Read{0, 0, std::nullopt}));
  EXPECT_EQ(CallOn("&#49;2", kInteger), (Read{6, 0, std::nullopt}));  // references are not decoded
  EXPECT_EQ(CallOn("4294967297", kInteger), (Read{10, 1, std::nullopt}));
}

TEST(ReadSongProp, ReadsANumberWithoutTheTextFlagWhateverElseIsSet) {
  EXPECT_EQ(CallOn("7", SONGPROP_URL), (Read{1, 7, std::nullopt}));
  EXPECT_EQ(CallOn("7", 1 | 8 | 16), (Read{1, 7, std::nullopt}));
  EXPECT_EQ(CallOn("7", ~SONGPROP_TEXT), (Read{1, 7, std::nullopt}));
}

TEST(ReadSongProp, IgnoresUnknownFlags) {
  EXPECT_EQ(CallOn("x&#65;", kText | 1 | 8), (Read{6, 7, "xA"}));
  EXPECT_EQ(CallOn("file:///a%20b", -1), (Read{4, 5, "/a b"}));
}

TEST(ReadSongProp, GivesANumberWithoutATextPointer) {
  std::int32_t value = kUnwritten;
  EXPECT_EQ(ReadSongProp(Dictionary().Pair("K", "integer", "5").get(), "K", nullptr, &value, 0), 1);
  EXPECT_EQ(value, 5);
}

TEST(ReadSongProp, SurvivesATextFlagWithoutATextPointer) {
  std::int32_t value = kUnwritten;
  EXPECT_EQ(ReadSongProp(Dictionary().Pair("K", "string", "ab").get(), "K", nullptr, &value, kText),
            2);
  EXPECT_EQ(value, 3);
}

TEST(ReadSongProp, GivesTheSizeOfTheTextAsItStandsInTheFile) {
  EXPECT_EQ(CallOn("AC&amp;DC", kText), (Read{9, 10, "AC&DC"}));
  EXPECT_EQ(CallOn("plain", kText), (Read{5, 6, "plain"}));
  EXPECT_EQ(CallOn("", kText), (Read{0, 1, ""}));
  EXPECT_EQ(CallOn("&#0;", kText), (Read{4, 5, ""}));
}

TEST(ReadSongProp, TerminatesWhatWasDecodedBeforeAnError) {
  const CapturedStderr log;
  EXPECT_EQ(CallOn("Rock &amp; &nbsp; Roll", kText), (Read{22, 23, "Rock & "}));
  EXPECT_EQ(CallOn("AT&T", kText), (Read{4, 5, "AT"}));
  EXPECT_EQ(CallOn("&", kText), (Read{1, 2, ""}));
  EXPECT_THAT(log.Messages(), ElementsAre("XML text \"&nbsp; Roll\" Escaping has no numeric",
                                          "XML text \"AT&T\" Escaping has no ending",
                                          "XML text \"&\" Escaping has no ending"));
}

TEST(ReadSongProp, GivesTheWholeSizeZeroFilledBehindAText) {
  const CapturedStderr log;
  char* text = nullptr;
  std::int32_t size = 0;
  ReadSongProp(Dictionary().Pair("K", "string", "a&lt;b &error; &#65;").get(), "K", &text, &size,
               kText);
  ASSERT_EQ(size, 21);
  EXPECT_EQ(std::string(text, 21), std::string("a<b ") + std::string(17, '\0'));
  free(text);
}

TEST(ReadSongProp, LeavesTheElementsAsTheyAre) {
  Dictionary dict;
  dict.Pair("K", "string", "AC&amp;DC");
  char* const before = dict.at(1).text;
  EXPECT_EQ(ReadFrom(dict.get(), "K", kText), ReadFrom(dict.get(), "K", kText));
  EXPECT_EQ(dict.at(1).text, before);
  EXPECT_STREQ(before, "AC&amp;DC");
}

// ---- URLs
// -----------------------------------------------------------------------------------------

TEST(ReadSongProp, GivesThePathOfAUrlAndItsOwnSize) {
  EXPECT_EQ(CallOn("file:///Users/x/Music/A%20B.mp3", kUrl),
            (Read{22, 23, "/Users/x/Music/A B.mp3"}));
  EXPECT_EQ(CallOn("file://localhost/a", kUrl), (Read{2, 3, "/a"}));
  EXPECT_EQ(CallOn("http://host:80/p?q#f", kUrl), (Read{2, 3, "/p"}));
  EXPECT_EQ(CallOn("http://host", kUrl), (Read{0, 1, ""}));
  EXPECT_EQ(CallOn("file://localhost//server/x", kUrl), (Read{10, 11, "//server/x"}));
  EXPECT_EQ(CallOn("file:///folder/", kUrl), (Read{7, 8, "/folder"}));
}

TEST(ReadSongProp, DecodesReferencesBeforeItReadsAUrl) {
  EXPECT_EQ(CallOn("file:///a&#38;b", kUrl), (Read{4, 5, "/a&b"}));
  EXPECT_EQ(CallOn("file:///a&#37;20b", kUrl), (Read{4, 5, "/a b"}));
  EXPECT_EQ(CallOn("file:///a&#38;lt;b", kUrl), (Read{7, 8, "/a&lt;b"}));
  EXPECT_EQ(CallOn("file:///a&lt;b", kUrl), (Read{0, 0, std::nullopt}));
}

TEST(ReadSongProp, LeavesTheTextPointerAloneForAMalformedUrl) {
  for (const char* url :
       {"file:///a b", "file:///100%", "file:///%4", "file:///%zz", "file:///a%00b", "file:///%FF",
        "file:///%C3%28", "file:///caf\u00e9", "http://x/^", "http://[::1]/a", "a\\b", "{}", "a|b",
        "a`b", "a\"b", "a<b", "a\x7F"}) {
    char mine[] = "mine";
    char* text = mine;
    std::int32_t value = kUnwritten;
    Dictionary dict;
    dict.Pair("K", "string", url);
    EXPECT_EQ(ReadSongProp(dict.get(), "K", &text, &value, kUrl), 0) << url;
    EXPECT_EQ(value, 0) << url;
    EXPECT_EQ(text, mine) << url;
  }
}

TEST(ReadSongProp, ReadsTheDecodedPrefixOfABrokenTextAsUrl) {
  const CapturedStderr log;
  EXPECT_EQ(CallOn("file:///a/b&x;c", kUrl), (Read{4, 5, "/a/b"}));
  EXPECT_THAT(log.Messages(), ElementsAre("XML text \"&x;c\" Escaping has no numeric"));
}
