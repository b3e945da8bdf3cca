// What `tavrel stats` counts.
#include <gmock/gmock.h>

#include "tests/host/Fixture.h"
#include "tests/support/Json.h"

namespace tavrel::test {
namespace {

using test::Json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class Statistics : public HostTest {
 protected:
  Statistics() {
    const auto track = [](int id, std::string_view artist, int year, int rating) {
      return TrackText{id, Property("Artist", artist) + Property("Album", "Hits") +
                               Number("Year", year) + Number("Total Time", 60000) +
                               Number("Rating", rating) + "<key>Date Added</key><date>201" +
                               std::to_string(id) + "-01-01T00:00:00Z</date>"};
    };
    file_ = Write("library.xml", LibraryText({track(1, "Satie", 1888, 20),
                                              track(2, "Elgar", 1899, 100),
                                              track(3, "Elgar", 1901, 100),
                                              {4, Number("Play Count", 3)}}));
  }

  Outcome Show(std::vector<std::string> arguments, Command command = {}) const {
    arguments.insert(arguments.begin(), {"--library", file_, "stats"});
    return Run(arguments, command);
  }

  Json Read(const std::string& by) const {
    return Json::Parse(Show({"--by", by, "--json"}).output);
  }

  std::string file_;
};

TEST_F(Statistics, OfTextsBeginWithThoseOfMostSongs) {
  EXPECT_THAT(Lines(Show({}).output),
              ElementsAre("Artist  Songs  Time  Plays", "Elgar       2  2:00",
                          "Satie       1  1:00", "(none)      1            3"));
  EXPECT_THAT(Lines(Show({"--top", "1"}).output),
              ElementsAre("Artist  Songs  Time", "Elgar       2  2:00"));
}

TEST_F(Statistics, OfNumbersStandInTheirOrder) {
  const Json decades = Read("decade");
  ASSERT_EQ(decades.size(), 4u);
  EXPECT_EQ(decades[0], Json::Parse(R"({"decade":1880,"songs":1,"seconds":60,"plays":0})"));
  EXPECT_EQ(decades[2]["decade"], 1900);
  EXPECT_TRUE(decades[3]["decade"].IsNull());
  EXPECT_EQ(Read("year")[1]["year"], 1899);
  EXPECT_EQ(Read("rating")[1], Json::Parse(R"({"rating":100,"songs":2,"seconds":120,"plays":0})"));
  EXPECT_EQ(Read("added")[0]["added"], 2011);
  EXPECT_EQ(Lines(Show({"--by", "rating", "--top", "1"}).output)[1], "100         2  2:00")
      << "the most songs";
}

TEST_F(Statistics, OfAlbumsTellThemApart) {
  const Json albums = Read("album");
  ASSERT_EQ(albums.size(), 3u);
  EXPECT_EQ(albums[0]["artist"], "Elgar");
  EXPECT_EQ(albums[0]["songs"], 2);
  EXPECT_TRUE(albums[2]["album"].IsNull());
}

TEST_F(Statistics, OfAlbumsAsCommasNameTheirArtists) {
  EXPECT_EQ(Show({"--by", "album", "--format", "csv"}).output,
            "album,artist,songs,seconds,plays\nHits,Elgar,2,120,0\nHits,Satie,1,60,0\n"
            ",,1,0,3\n");
}

TEST_F(Statistics, HaveBarsOnATerminalOnly) {
  Command terminal;
  terminal.output = Stream::Terminal;
  EXPECT_THAT(Show({}, terminal).output, HasSubstr("\u2588\u2588"));
  EXPECT_THAT(Show({}).output, Not(HasSubstr("\u2588")));
}

TEST_F(Statistics, WrongUsageEndsWithTwo) {
  EXPECT_EQ(Show({"--by", "size"}).exitCode, 2);
  EXPECT_EQ(Show({"--top", "0"}).exitCode, 2);
  EXPECT_EQ(Show({"--top", "many"}).exitCode, 2);
}

}  // namespace
}  // namespace tavrel::test
