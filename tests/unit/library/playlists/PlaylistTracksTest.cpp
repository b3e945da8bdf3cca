// CreatePlaylistTrack on records, elements and a track table of the test's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <vector>

#include "agent/Exports.h"
#include "library/State.h"
#include "library/playlists/PlaylistTable.h"
#include "system/Memory.h"
#include "xml/TBXML.h"

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class PlaylistTracks : public testing::Test {
 protected:
  PlaylistTracks() {
    std::memset(guarded_.behind, 0x5A, sizeof guarded_.behind);
    std::memset(global_.behind, 0x5A, sizeof global_.behind);
    g_pGlobal = &global_.state;
  }
  ~PlaylistTracks() override {
    g_pGlobal = nullptr;
    EXPECT_THAT(global_.behind, Each(0x5A)) << "written behind the global record";
    std::free(guarded_.playlist.tracks);
  }

  void SetTrackIds(const std::vector<std::int32_t>& ids) {
    records_.assign(ids.size(), TrackRecord{});
    table_.clear();
    for (std::size_t i = 0; i < ids.size(); ++i) {
      records_[i].trackId = ids[i];
      table_.push_back(&records_[i]);
    }
    global_.state.tracks = table_.data();
    global_.state.trackCount = global_.state.trackCapacity = static_cast<std::int32_t>(ids.size());
  }

  // Appends the tracks of a playlist dictionary that is written as XML.
  void Append(const std::string& dictionary) {
    const auto document = TBXML::tbxmlWithXMLString("<dict>" + dictionary + "</dict>");
    EXPECT_EQ(CreatePlaylistTrack(&playlist(), document->rootXMLElement()), 0);
  }
  void AppendItems(const std::vector<int>& ids) {
    std::string items = "<key>Playlist Items</key><array>";
    for (const int id : ids) {
      items.append("<dict><key>Track ID</key><integer>").append(std::to_string(id));
      items.append("</integer></dict>");
    }
    Append(items + "</array>");
  }

  PlaylistRecord& playlist() { return guarded_.playlist; }
  std::vector<std::int32_t> Ids() {
    std::vector<std::int32_t> ids;
    for (std::int32_t i = 0; i < playlist().count; ++i) {
      ids.push_back(playlist().tracks[i]->trackId);
    }
    return ids;
  }

  struct {
    PlaylistRecord playlist = {};
    unsigned char behind[64];
  } guarded_;

 private:
  struct {
    GlobalState state = {};
    unsigned char behind[256];
  } global_;
  std::vector<TrackRecord> records_;
  std::vector<TrackRecord*> table_;
};

}  // namespace

TEST_F(PlaylistTracks, WritesNothingBehindTheRecordAndNoOtherField) {
  SetTrackIds({1, 2, 3});
  char name[] = "mine";
  playlist().kind = 77;
  playlist().name = name;
  playlist().nameSize = 5;
  AppendItems({3, 1});
  EXPECT_THAT(Ids(), ElementsAre(3, 1));
  EXPECT_EQ(playlist().kind, 77);
  EXPECT_EQ(playlist().name, name);
  EXPECT_EQ(playlist().nameSize, 5);
  EXPECT_THAT(guarded_.behind, Each(0x5A));
}

TEST_F(PlaylistTracks, GrowsTheCapacityBy32BeforeAnItemIsLookedUp) {
  SetTrackIds({1});
  std::vector<int> ids(31, 1);
  AppendItems(ids);
  EXPECT_EQ(playlist().capacity, 32);
  AppendItems({1});
  EXPECT_EQ(playlist().count, 32);
  EXPECT_EQ(playlist().capacity, 32);
  AppendItems({99});  // dropped, and there is room for it all the same
  EXPECT_EQ(playlist().count, 32);
  EXPECT_EQ(playlist().capacity, 64);
  AppendItems({99, 99, 1});
  EXPECT_EQ(playlist().count, 33);
  EXPECT_EQ(playlist().capacity, 64);
}

TEST_F(PlaylistTracks, MakesRoomForAnItemThatIsDropped) {
  SetTrackIds({1});
  AppendItems({99});
  EXPECT_EQ(playlist().count, 0);
  EXPECT_EQ(playlist().capacity, 32);
  EXPECT_NE(playlist().tracks, nullptr);
}

TEST_F(PlaylistTracks, MakesNoRoomWithoutItems) {
  SetTrackIds({1});
  Append("<key>Playlist Items</key><array></array>");
  Append("<key>Playlist Items</key><array/>");
  Append("<key>Name</key><string>x</string>");
  EXPECT_EQ(playlist().capacity, 0);
  EXPECT_EQ(playlist().tracks, nullptr);
}

TEST_F(PlaylistTracks, AppendsToWhatTheRecordHolds) {
  SetTrackIds({1, 2, 3});
  AppendItems({1});
  AppendItems({2, 3});
  EXPECT_THAT(Ids(), ElementsAre(1, 2, 3));
}

TEST_F(PlaylistTracks, FindsEveryTrackOfAnAscendingTableAndNoOther) {
  for (int size = 0; size <= 20; ++size) {
    std::vector<std::int32_t> ids;
    for (int i = 0; i < size; ++i) ids.push_back(10 * i - 50);
    SetTrackIds(ids);
    playlist().count = 0;
    std::vector<int> asked;
    for (int id = -60; id <= 10 * size; ++id) asked.push_back(id);
    AppendItems(asked);
    EXPECT_EQ(Ids(), ids);
  }
}

TEST_F(PlaylistTracks, LosesItemsOfATableThatDoesNotAscend) {
  SetTrackIds({5, 1, 4, 2, 3});
  AppendItems({1, 2, 3, 4, 5});
  // Middle record first: 4; below it 1 is never asked for 5, above it 2 and 3 are too small for 5.
  EXPECT_THAT(Ids(), ElementsAre(4));
}

TEST_F(PlaylistTracks, TakesTheMiddleOneOfTracksWithTheSameId) {
  SetTrackIds({7, 7, 7, 7});
  AppendItems({7});
  ASSERT_EQ(playlist().count, 1);
  EXPECT_EQ(playlist().tracks[0], g_pGlobal->tracks[1]);  // (0 + 3) / 2
}

TEST_F(PlaylistTracks, DropsEverythingWhileThereAreNoTracks) {
  AppendItems({0, 1, -1});
  EXPECT_THAT(Ids(), IsEmpty());
}

TEST_F(PlaylistTracks, SurvivesNullArguments) {
  TBXMLElement dict = {};
  EXPECT_EQ(CreatePlaylistTrack(nullptr, &dict), 0);
  EXPECT_EQ(CreatePlaylistTrack(&playlist(), nullptr), 0);
  EXPECT_EQ(CreatePlaylistTrack(nullptr, nullptr), 0);
  EXPECT_EQ(CreatePlaylistTrack(&playlist(), &dict), 0);
  g_pGlobal = nullptr;
  EXPECT_EQ(CreatePlaylistTrack(&playlist(), &dict), 0);
  EXPECT_EQ(playlist().capacity, 0);
}

TEST_F(PlaylistTracks, KeepsWhatFitsWhenMemoryIsExhausted) {
  SetTrackIds({1});
  AppendItems(std::vector<int>(32, 1));
  std::string items = "<a/><array>";
  for (int i = 0; i < 40; ++i) items += "<dict><k/><i>1</i></dict>";
  const auto document = TBXML::tbxmlWithXMLString("<dict>" + items + "</array></dict>");
  tavrel::system::faults::FailAfter(0, false);
  EXPECT_EQ(CreatePlaylistTrack(&playlist(), document->rootXMLElement()), 0);
  tavrel::system::faults::Stop();
  EXPECT_EQ(playlist().count, 32);
  EXPECT_EQ(playlist().capacity, 32);
}
