#include <gmock/gmock.h>

#include "tests/host/Fixture.h"
#include "tests/support/Json.h"

namespace tavrel::tests {
namespace {

using test::Json;

class Playlists : public HostTest {
 protected:
  std::string WriteLibrary() const {
    return Write("library.xml",
                 LibraryText({{1, Property("Name", "Nimrod")}, {2, ""}},
                             {{Property("Name", "Evening"), {1, 2, 1}},
                              {Property("Name", "Genius") + Number("Distinguished Kind", 26), {}},
                              {Property("Name", "Music") + Number("Distinguished Kind", 4), {1}},
                              {"", {2}},
                              {Property("Name", "Rock &#38; Roll"), {}}}));
  }
};

TEST_F(Playlists, StandGroupByGroup) {
  const Outcome outcome = Run({"--library", WriteLibrary(), "playlists"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_EQ(outcome.errors, "");
  const std::vector<std::string> lines = Lines(outcome.output);
  ASSERT_GE(lines.size(), 6u);
  EXPECT_EQ(lines[0], "Group    Position  Kind  Songs  Name");
  EXPECT_EQ(lines[1], "library       0:0     4      1  Music");
  const std::vector<std::string> rest(lines.end() - 4, lines.end());
  EXPECT_THAT(rest, testing::ElementsAre("Genius        1:0    26      0  Genius",
                                         "other         2:0     0      3  Evening",
                                         "other         2:1     0      1",
                                         "other         2:2     0      0  Rock & Roll"));
}

TEST_F(Playlists, AsJson) {
  const Outcome outcome = Run({"--library", WriteLibrary(), "playlists", "--json"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  const Json list = Json::Parse(outcome.output);
  EXPECT_EQ(list[0], Json::Parse(R"({"group":0,"position":0,"kind":4,"songs":1,"name":"Music"})"));
  const Json unnamed = list[list.size() - 2];
  EXPECT_EQ(unnamed, Json::Parse(R"({"group":2,"position":1,"kind":0,"songs":1,"name":null})"));
}

}  // namespace
}  // namespace tavrel::tests
