// GetPlaylistByTrackId on groups of the test's own.
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "agent/Exports.h"
#include "library/State.h"
#include "library/playlists/PlaylistTable.h"

namespace {

class PlaylistByTrackId : public testing::Test {
 protected:
  PlaylistByTrackId() {
    for (std::size_t i = 0; i < groups_.size(); ++i) groupPointers_[i] = &groups_[i];
    state_.groups = groupPointers_.data();
    state_.groupCapacity = state_.groupCount = kGroupCount;
    g_pGlobal = &state_;
  }
  ~PlaylistByTrackId() override { g_pGlobal = nullptr; }

  // The playlists of a group, each given by its Track IDs.
  void SetGroup(std::size_t group, const std::vector<std::vector<int>>& playlists) {
    lists_[group].resize(playlists.size());
    for (std::size_t p = 0; p < playlists.size(); ++p) {
      List& list = lists_[group][p];
      list.records.resize(playlists[p].size());
      for (std::size_t i = 0; i < playlists[p].size(); ++i) {
        list.records[i].trackId = playlists[p][i];
        list.tracks.push_back(&list.records[i]);
      }
      list.playlist.tracks = list.tracks.data();
      list.playlist.count = list.playlist.capacity = static_cast<std::int32_t>(list.tracks.size());
      pointers_[group].push_back(&list.playlist);
    }
    groups_[group] = {pointers_[group].data(), static_cast<std::int32_t>(playlists.size()),
                      static_cast<std::int32_t>(playlists.size())};
  }

  PlaylistRecord* Handle(std::size_t group, std::size_t index) { return pointers_[group][index]; }

 private:
  struct List {
    PlaylistRecord playlist = {};
    std::vector<TrackRecord> records;
    std::vector<TrackRecord*> tracks;
  };
  std::array<std::vector<List>, kGroupCount> lists_;
  std::array<std::vector<PlaylistRecord*>, kGroupCount> pointers_;
  std::array<PlaylistGroup, kGroupCount> groups_ = {};
  std::array<PlaylistGroup*, kGroupCount> groupPointers_ = {};
  GlobalState state_ = {};
};

}  // namespace

TEST_F(PlaylistByTrackId, AnswersTheFirstInTheOrderOfGroupsPlaylistsAndPositions) {
  SetGroup(0, {{}, {1, 2}, {2, 3, 3}});
  SetGroup(1, {{4, 3}});
  SetGroup(2, {{5, 4, 1}, {5, 6}});
  struct Case {
    std::int32_t id;
    std::size_t group;
    std::size_t playlist;
    std::int32_t index;
  };
  for (const auto& [id, group, playlist, index] :
       {Case{1, 0, 1, 0}, Case{2, 0, 1, 1}, Case{3, 0, 2, 1}, Case{4, 1, 0, 0}, Case{5, 2, 0, 0},
        Case{6, 2, 1, 1}}) {
    std::int32_t position = -9;
    EXPECT_EQ(GetPlaylistByTrackId(id, &position), Handle(group, playlist)) << id;
    EXPECT_EQ(position, index) << id;
    EXPECT_EQ(GetPlaylistByTrackId(id, nullptr), Handle(group, playlist)) << id;
  }
}

TEST_F(PlaylistByTrackId, LeavesTheIndexAloneWhenThereIsNone) {
  SetGroup(0, {{1, 2}});
  SetGroup(2, {{3}});
  std::int32_t position = -9;
  EXPECT_EQ(GetPlaylistByTrackId(4, &position), nullptr);
  EXPECT_EQ(GetPlaylistByTrackId(0, &position), nullptr);
  EXPECT_EQ(GetPlaylistByTrackId(-1, &position), nullptr);
  EXPECT_EQ(position, -9);
}
