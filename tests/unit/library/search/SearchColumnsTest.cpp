#include <gtest/gtest.h>

#include "agent/Exports.h"
#include "library/search/SearchColumns.h"
#include "library/tracks/TrackTable.h"
#include "tests/support/SongLibrary.h"

namespace {

using namespace tavrel;
using namespace tavrel::test;

class Columns {
 public:
  explicit Columns(std::uint32_t mostTracks) {
    testing::internal::CaptureStderr();
    isRead = ReadSearchColumns(*g_pGlobal->document, mostTracks, columns);
    log = testing::internal::GetCapturedStderr();
  }
  Columns(const Columns&) = delete;
  Columns& operator=(const Columns&) = delete;
  ~Columns() { system::ReleaseBlock(columns.block); }

  SearchColumns columns = {};
  bool isRead;
  std::string log;
};

TEST(SearchColumns, NeighboursWithTheSameTextShareOneCopy) {
  const SongLibrary library(std::vector<LibraryTrack>{
      {1, "a", "Same"}, {2, "b", "Same"}, {3, "b"}, {4, "c"}, {5, "d", "Same"}});
  const Columns read(5);
  ASSERT_TRUE(read.isRead);
  const auto& columns = read.columns.columns;
  ASSERT_EQ(columns[0].runs.size(), 5u);
  ASSERT_EQ(columns[1].runs.size(), 4u);
  ASSERT_EQ(columns[2].runs.size(), 2u);
  EXPECT_EQ(columns[1].runs[1].firstTrack, 2u);
  EXPECT_EQ(columns[1].runs[2].firstTrack, 4u);
  EXPECT_EQ(columns[1].runs[3].firstTrack, 5u) << "the end";
  EXPECT_STREQ(read.columns.texts.bytes + columns[1].runs[0].text, "same");
  EXPECT_STREQ(read.columns.texts.bytes + columns[1].runs[1].text, "");
  EXPECT_EQ(columns[2].runs[1].text, columns[2].runs[0].text + 1) << "no album at all";
}

TEST(SearchColumns, FaultyTextsAreRememberedAndNotLogged) {
  const SongLibrary library(
      std::vector<LibraryTrack>{{1, "a"}, {2, "b", "x & y"}, {3, "c", "x & y"}, {4, "d &nbsp;"}});
  const Columns read(4);
  ASSERT_TRUE(read.isRead);
  const auto& columns = read.columns.columns;
  ASSERT_EQ(columns[0].faulty.size(), 1u);
  EXPECT_EQ(columns[0].faulty[0].firstTrack, 3u);
  EXPECT_EQ(columns[0].faulty[0].endTrack, 4u);
  ASSERT_EQ(columns[1].faulty.size(), 1u);
  EXPECT_EQ(columns[1].faulty[0].firstTrack, 1u);
  EXPECT_EQ(columns[1].faulty[0].endTrack, 3u);
  EXPECT_STREQ(columns[1].faulty[0].source, "x & y");
  EXPECT_STREQ(read.columns.texts.bytes + columns[1].runs[1].text, "x ");
  EXPECT_EQ(read.log, "");
}

TEST(SearchColumns, MoreTracksThanThereIsRoomForAreNotRead) {
  const SongLibrary library(std::vector<LibraryTrack>{{1, "a"}, {2, "b"}});
  EXPECT_FALSE(Columns(1).isRead);
  EXPECT_TRUE(Columns(2).isRead);
}

}  // namespace
