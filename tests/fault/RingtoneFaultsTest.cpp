// Ringtones while every allocation fails in turn: what stays is whole, and nothing is lost.
#include <gtest/gtest.h>

#include <algorithm>

#include "agent/Exports.h"
#include "agent/Lifecycle.h"
#include "library/ringtones/RingtoneCatalogue.h"
#include "tests/fault/FailingNew.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/RingtoneScene.h"

namespace tavrel::test {
namespace {

// Longer than what a string holds without an allocation.
constexpr const char* kPath = "/a/path/that/is/longer/than/a/short/string/My.Tone.m4r";

bool IsWhole(const PlaylistRecord& ringtones) {
  return std::all_of(ringtones.tracks, ringtones.tracks + ringtones.count,
                     [](const TrackRecord* ringtone) {
                       return ringtone->info.name != nullptr && ringtone->info.location != nullptr;
                     });
}

TEST(RingtoneFaults, ALoadKeepsTheRingtonesThatAreWhole) {
  const RingtoneScene scene;
  for (int i = 0; i < 40; ++i) scene.Put(std::to_string(i) + ".m4r");
  const CapturedStderr log;
  std::int32_t most = 0;
  WithEachAllocationFailing(120, [&] {
    Inside(AgentInitializer);
    const LibraryState* library = CurrentLibrary();
    const PlaylistRecord* ringtones = library == nullptr ? nullptr : RingtonePlaylist(*library);
    if (ringtones != nullptr) {
      EXPECT_TRUE(IsWhole(*ringtones));
      most = std::max(most, ringtones->count);
    }
    Inside(AgentFinalizer);
  });
  EXPECT_EQ(most, 40);
}

TEST(RingtoneFaults, AnImportListsTheFileOnlyWhenItAnswersZero) {
  const RingtoneScene scene;
  for (int i = 0; i < 32; ++i) scene.Put(std::to_string(i) + ".m4r");
  const StandInRunner runner("exit 0");
  const CapturedStderr log;
  bool seen[3] = {};
  WithEachAllocationFailing(6, AgentInitializer, [&] {
    const std::int32_t answer = Inside([] { return AppendRingtone(kPath); });
    system::faults::Stop();
    const PlaylistRecord& ringtones = *RingtonePlaylist(*CurrentLibrary());
    EXPECT_EQ(ringtones.count, answer == 0 ? 33 : 32);
    EXPECT_TRUE(IsWhole(ringtones));
    seen[answer + 1] = true;
    AgentFinalizer();
  });
  EXPECT_TRUE(seen[0] && seen[1] && seen[2]) << "not every answer was reached";
}

}  // namespace
}  // namespace tavrel::test
