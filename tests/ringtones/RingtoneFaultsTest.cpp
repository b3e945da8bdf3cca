// Every allocation fails once, and from there on all of them: nothing crashes, nothing is lost, and
// what stays is whole. AddressSanitizer sees the rest.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "agent/Implementations.h"
#include "library/RingtoneCatalogue.h"
#include "platform/Memory.h"
#include "ringtones/RingtoneScene.h"
#include "system/CapturedStderr.h"

namespace tavrel {
namespace {

namespace faults = platform::faults;

// Runs `body` with the n-th allocation failing, for every n, until none fails any more.
template <class Body>
void FailEach(bool once, Body body) {
  std::int64_t failures = 0;
  for (bool hasFailed = true; hasFailed; ++failures) {
    ASSERT_LT(failures, 5000);
    faults::FailAfter(failures, once);
    body();
    hasFailed = faults::Asked() > failures;
    faults::Stop();
  }
  EXPECT_GT(failures, 10);
}

bool IsWhole(const TrackRecord* ringtone) {
  return ringtone->info.name != nullptr && ringtone->info.location != nullptr;
}

class RingtoneFaults : public testing::TestWithParam<bool> {};

TEST_P(RingtoneFaults, ALoadKeepsWhatIsWhole) {
  test::RingtoneScene scene;
  for (int i = 0; i < 40; ++i) scene.Put(std::to_string(i) + ".m4r");
  const test::CapturedStderr log;
  bool isWhole = true;
  std::int32_t most = 0;
  FailEach(GetParam(), [&] {
    AgentInitializer();
    const PlaylistRecord* ringtones = RingtonePlaylist();
    for (std::int32_t i = 0; i < GetSongCount(ringtones); ++i) {
      isWhole = isWhole && IsWhole(ringtones->tracks[i]);
    }
    most = std::max(most, GetSongCount(ringtones));
    AgentFinalizer();
  });
  EXPECT_TRUE(isWhole);
  EXPECT_EQ(most, 40);
}

TEST_P(RingtoneFaults, AnImportListsTheFileOnlyWhenItAnswersZero) {
  test::RingtoneScene scene;
  for (int i = 0; i < 32; ++i) scene.Put(std::to_string(i) + ".m4r");
  scene.Load();
  const test::StandInRunner runner("exit 0");
  const test::CapturedStderr log;
  std::set<std::int32_t> answers;
  FailEach(GetParam(), [&] {
    const PlaylistRecord* ringtones = RingtonePlaylist();
    const std::int32_t before = ringtones->count;
    const std::int32_t answer =
        AppendRingtone("/a/path/that/is/too/long/to/stand/inside/a/string/itself/My.Tone.m4r");
    const std::int32_t added = ringtones->count - before;
    faults::Stop();
    answers.insert(answer);
    EXPECT_EQ(added, answer == 0 ? 1 : 0);
    EXPECT_TRUE(IsWhole(ringtones->tracks[ringtones->count - 1]));
  });
  EXPECT_THAT(answers, testing::ElementsAre(-1, 0, 1));
}

INSTANTIATE_TEST_SUITE_P(Memory, RingtoneFaults, testing::Values(true, false),
                         [](const testing::TestParamInfo<bool>& once) {
                           return once.param ? "FailsOnce" : "FailsFromThenOn";
                         });

}  // namespace
}  // namespace tavrel
