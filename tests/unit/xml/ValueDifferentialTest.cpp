// The removal of CDATA markers from values beside its literal form.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tests/support/GuardedPages.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"
#include "tests/unit/xml/Sequences.h"
#include "xml/CDataSections.h"

using namespace tavrel::test;

namespace {

// A value after its markers were taken out one by one.
std::string LiterallyCleaned(std::string value) {
  for (;;) {
    const std::size_t opener = value.find("<![CDATA[");
    if (opener == std::string::npos) return value;
    value.erase(opener, 9);
    const std::size_t end = value.find("]]>", opener);
    if (end == std::string::npos) return value;
    value.erase(end, 3);
  }
}

void ExpectSameValue(GuardedPages& pages, std::string_view value) {
  char* place = pages.PlaceAtEnd(value);
  tavrel::xml::RemoveValueMarkers(place, place + value.size());
  ASSERT_EQ(std::string(place), LiterallyCleaned(std::string(value))) << value;
}

const Alphabet& Markers() {
  static const Alphabet alphabet = {"<![CDATA[", "<![CDATA[", "<![CDATA[", "]]>",     "]]>", "]]>",
                                    "]",         "]>",        "]]",        ">",       "x",   "[",
                                    "<![CD",     "ATA[",      "<",         "![CDATA["};
  return alphabet;
}

}  // namespace

TEST(ValueDifferential, EveryShortValueKeepsTheSameBytes) {
  GuardedPages pages(4096);
  const Alphabet pieces = {"<![CDATA[", "]]>", "]", ">", "<![CD", "ATA[", "x"};
  ForEverySequence(pieces, kSlow ? 5 : 7,
                   [&](const std::string& value) { ExpectSameValue(pages, value); });
}

TEST(ValueDifferential, RandomValuesWithNestedAndJoinedMarkersKeepTheSameBytes) {
  GuardedPages pages(4096);
  Random random(20180917);
  for (int round = 0; round < Rounds(300000) && !HasFatalFailure(); ++round) {
    ExpectSameValue(pages, random.Text(Markers(), random.Below(60)));
  }
}

TEST(ValueDifferential, EveryPrefixOfARandomValueKeepsTheSameBytes) {
  GuardedPages pages(4096);
  Random random(20191007);
  for (int round = 0; round < Rounds(3000); ++round) {
    const std::string value = random.Text(Markers(), random.Below(40));
    for (std::size_t length = 0; length <= value.size() && !HasFatalFailure(); ++length) {
      ExpectSameValue(pages, std::string_view(value).substr(0, length));
    }
  }
}
