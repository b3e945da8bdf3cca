// Every property, beside a literal reading of the same elements.
#include <gtest/gtest.h>

#include <ostream>

#include "agent/Exports.h"
#include "library/file/PropertyList.h"
#include "library/file/PropertyText.h"
#include "tests/reference/LiteralProperties.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/PropertySurvey.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryHome.h"

namespace tavrel::test {
namespace {

using VisitLog = std::vector<std::string>;

struct Visited {
  SeenPairs pairs;
  VisitLog log;

  friend bool operator==(const Visited&, const Visited&) = default;
  friend void PrintTo(const Visited& visited, std::ostream* stream) {
    *stream << testing::PrintToString(visited.pairs) << testing::PrintToString(visited.log);
  }
};

std::int32_t Keep(const char* key, const char* text, const char* type, void* context) {
  SeenPair pair{key, std::nullopt, type};
  if (text != nullptr) pair.text = text;
  static_cast<SeenPairs*>(context)->push_back(std::move(pair));
  return 1;
}

Visited VisitLiterally(const TBXMLElement* dict) {
  Visited visited;
  for (const auto& [key, text, type] : reference::ReadPairsLiterally(dict, visited.log)) {
    visited.pairs.push_back({key, text, type});
  }
  return visited;
}

Visited VisitSong(std::int32_t song) {
  Visited visited;
  const CapturedStderr log;
  const std::int32_t count = VisitSongProperties(OpenAllSongs(), song, Keep, &visited.pairs);
  EXPECT_EQ(count, static_cast<std::int32_t>(visited.pairs.size()));
  visited.log = log.Messages();
  return visited;
}

void ExpectAlike(const TBXMLElement* dict, std::int32_t song,
                 const std::vector<std::string>& keys) {
  const Visited literal = VisitLiterally(dict);
  EXPECT_EQ(VisitSong(song), literal);
  for (const std::string& key : keys) {
    VisitLog expected;
    const auto text = reference::ReadTextLiterally(dict, key, expected);
    const CapturedStderr log;
    const std::int32_t size = GetSongProperty(OpenAllSongs(), song, key.c_str(), nullptr, 0);
    EXPECT_EQ(log.Messages(), expected) << key;
    std::string buffer(static_cast<std::size_t>(size) + 1, '#');
    EXPECT_EQ(GetSongProperty(OpenAllSongs(), song, key.c_str(), buffer.data(), size), size);
    EXPECT_EQ(buffer, text ? *text + '\0' + '#' : "#") << key;
  }
}

// Loads the tracks, and compares each. Result: how many pairs and how many log lines there were.
struct Seen {
  std::size_t pairs = 0;
  std::size_t lines = 0;
};
Seen CompareAll(const TemporaryHome& home, const std::string& tracks,
                const std::vector<std::string>& keys) {
  home.WriteLibrary(LibraryText({tracks, {}}));
  EXPECT_EQ(AgentInitializer(), 0);
  Seen seen;
  std::int32_t song = 0;
  const TBXMLElement* trackDictionary = TopLevelChild(g_pGlobal->document, "dict");
  for (const auto [key, dict] : Pairs(trackDictionary)) {
    const Visited literal = VisitLiterally(dict);
    seen.pairs += literal.pairs.size();
    seen.lines += literal.log.size();
    ExpectAlike(dict, song++, keys);
  }
  EXPECT_EQ(song, GetSongCount(OpenAllSongs()));
  AgentFinalizer();
  return seen;
}

const std::vector<std::string> kKeys = {"Name", "A&B", "A", "", "true", "<", "caf\xE9", "no such"};
const std::vector<std::string_view> kTextPieces = {
    "a", "Bc", " ", "&amp;", "&#38;", "&#x2F;", "&#233;", "&", "&nbsp;", ";", "&;", "\u65E5", "7"};
const std::vector<std::string_view> kKeyPieces = {"Name", "A",      "&amp;",   "B", "&lt;",
                                                  "caf",  "&#233;", "&bogus;", "&", "true"};
const std::vector<std::string_view> kTypes = {"string", "integer", "real", "date",  "true", "false",
                                              "data",   "array",   "dict", "other", "key",  "dat"};

std::string RandomPair(Random& random) {
  const std::string key = random.Text(kKeyPieces, random.Below(4));
  const std::string type(kTypes[random.Below(kTypes.size())]);
  const std::string text = random.Text(kTextPieces, random.Below(6));
  const std::string start = random.Below(9) == 0 ? "<key/>" : "<key>" + key + "</key>";
  switch (random.Below(6)) {
    case 0:
      return start + "<" + type + "/>";
    case 1:
      return start + "<" + type + "><![CDATA[" + text + "]]></" + type + ">";
    case 2:
      return start + "<" + type + ">" + text + "<a/></" + type + ">";
    default:
      return start + "<" + type + ">" + text + "</" + type + ">";
  }
}

TEST(PropertyText, OfRandomPairsIsWhatALiteralReadingGives) {
  Random random(2012);
  const TemporaryHome home;
  const ScopedVariable variable("HOME", home.path().c_str());
  Seen seen;
  for (int round = 0; round < Rounds(64); ++round) {
    std::string tracks;
    for (int track = 0; track < 30; ++track) {
      tracks += "<key>1</key><dict>";
      for (std::size_t count = random.Below(12); count > 0; --count) tracks += RandomPair(random);
      tracks += "</dict>";
    }
    const Seen more = CompareAll(home, tracks, kKeys);
    seen.pairs += more.pairs;
    seen.lines += more.lines;
    if (HasFailure()) FAIL() << tracks;
  }
  EXPECT_GT(seen.pairs, static_cast<std::size_t>(Rounds(64) * 100));
  EXPECT_GT(seen.lines, static_cast<std::size_t>(Rounds(64) * 20));
}

// Whatever a file holds in the place of its tracks.
TEST(PropertyText, OfRandomElementsIsWhatALiteralReadingGives) {
  const std::vector<std::string_view> kPieces = {"<key>Name</key>",
                                                 "<key>A&amp;B</key>",
                                                 "<string>&#65;</string>",
                                                 "<true/>",
                                                 "<key/>",
                                                 "<key>",
                                                 "</key>",
                                                 "<string>",
                                                 "</string>",
                                                 "<dict>",
                                                 "</dict>",
                                                 "<data>",
                                                 "</data>",
                                                 "Name",
                                                 "&amp;",
                                                 "&x;",
                                                 "A",
                                                 "<!-- & -->",
                                                 "<![CDATA[<&]]>",
                                                 "<a b='c'/>",
                                                 " ",
                                                 ">"};
  Random random(77);
  const TemporaryHome home;
  const ScopedVariable variable("HOME", home.path().c_str());
  std::size_t pairs = 0;
  for (int round = 0; round < Rounds(400); ++round) {
    const std::string tracks = "<key>1</key><dict>" + random.Text(kPieces, random.Below(120));
    pairs += CompareAll(home, tracks, kKeys).pairs;
    if (HasFailure()) FAIL() << tracks;
  }
  EXPECT_GT(pairs, static_cast<std::size_t>(Rounds(400) / 4));
}

// The parser makes no such record; the layout of records allows it.
TEST(PropertyText, OfAnElementWithoutANameHasAnEmptyType) {
  char name[] = "Name";
  char text[] = "x";
  TBXMLElement key{};
  TBXMLElement value{};
  TBXMLElement dict{};
  key.text = name;
  key.nextSibling = &value;
  value.text = text;
  dict.firstChild = &key;
  SeenPairs pairs;
  EXPECT_EQ(VisitProperties(&dict, Keep, &pairs), 1);
  EXPECT_EQ(pairs, (SeenPairs{{"Name", "x", ""}}));
}

}  // namespace
}  // namespace tavrel::test
