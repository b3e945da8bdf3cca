// Adding a ringtone, with a stand-in for the runner of the script.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/Exports.h"
#include "library/ringtones/RingtoneCatalogue.h"
#include "library/ringtones/RingtoneImport.h"
#include "system/Memory.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/RingtoneScene.h"

namespace tavrel {
namespace {

using test::CapturedStderr;
using test::kRecord;
using test::LastPlaylist;
using test::Listed;
using test::ListedNames;
using test::Ringtone;
using test::RingtoneScene;
using test::ScopedVariable;
using test::StandInRunner;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kNoPath = "Add ringtone to iTunes failed as pszPath == 0.";
constexpr const char* kNotRun = "Play ringtone script execute error.";
constexpr const char* kNotListed =
    "Add ringtone to iTunes success, but can't update ringtone list.";

constexpr const char* kPath = "/Users/u/Tones/My.Tone.m4r";
constexpr const char* kScript =
    "set Ringtone to (POSIX file \"/Users/u/Tones/My.Tone.m4r\")\n"
    "tell application \"iTunes\"\n"
    "    activate\n"
    "    play Ringtone\n"
    "end tell\n"
    "tell application \"System Events\"\n"
    "    keystroke \"l\" using command down\n"
    "end tell\n";

class RingtoneImport : public testing::Test {
 protected:
  RingtoneImport() { scene.Load(); }

  [[nodiscard]] static std::vector<Ringtone> List() { return Listed(LastPlaylist()); }

  RingtoneScene scene;
  StandInRunner runner{kRecord};
};

TEST_F(RingtoneImport, RunsTheExactScriptOnce) {
  EXPECT_EQ(AppendRingtone(kPath), 0);
  EXPECT_EQ(runner.Kept("script"), kScript);
}

TEST_F(RingtoneImport, ListsTheFileUnderItsNameUpToTheLastDot) {
  const CapturedStderr log;
  EXPECT_EQ(AppendRingtone(kPath), 0);
  EXPECT_EQ(log.Text(), "");
  EXPECT_THAT(List(), ElementsAre(Ringtone{"My.Tone", kPath}));
  const SongInfo& info = LastPlaylist()->tracks[0]->info;
  EXPECT_EQ(info.nameSize, 8);
  EXPECT_EQ(info.locationSize, 27);
}

TEST_F(RingtoneImport, ARecordHasANameAndALocationAndNothingElse) {
  EXPECT_EQ(AppendRingtone(kPath), 0);
  EXPECT_TRUE(test::HasOnlyNameAndLocation(*LastPlaylist()->tracks[0]));
}

TEST_F(RingtoneImport, TheNameIsThatOfTheFileInEveryCase) {
  const Ringtone cases[] = {{"Bell", "/tones/Bell"},
                            {"", "/tones/.m4r"},
                            {".hidden", "/tones/.hidden.m4r"},
                            {"Tone", "/to.nes/Tone"},
                            {"Tone.", "/tones/Tone..m4r"},
                            {"Tone", "/tones/Tone."},
                            {"", "/tones/"},
                            {"", "/"},
                            {"", "/to.nes/"},
                            {"a", "./a.b"},
                            {"F\u00fcr Elise", "/tones/F\u00fcr Elise.m4r"},
                            {"\xFF", "/tones/\xFF.m4r"}};
  for (const Ringtone& expected : cases) {
    EXPECT_EQ(AppendRingtone(expected.location.c_str()), 0);
    EXPECT_EQ(List().back(), expected);
  }
}

TEST_F(RingtoneImport, AddingTheSamePathTwiceListsItTwice) {
  EXPECT_EQ(AppendRingtone(kPath), 0);
  EXPECT_EQ(AppendRingtone(kPath), 0);
  EXPECT_THAT(ListedNames(LastPlaylist()), ElementsAre("My.Tone", "My.Tone"));
  EXPECT_EQ(runner.Kept("script"), std::string(kScript) + kScript);
}

TEST_F(RingtoneImport, TheRecordJoinsTheListedRingtonesAsTheLast) {
  scene.Unload();
  scene.Put("z.m4r");
  scene.Load();
  PlaylistRecord* handle = LastPlaylist();
  EXPECT_EQ(AppendRingtone("/tones/a.m4r"), 0);
  EXPECT_EQ(LastPlaylist(), handle);
  EXPECT_THAT(ListedNames(handle), ElementsAre("z", "a"));
}

TEST_F(RingtoneImport, ThePlaylistGrowsByThirtyTwo) {
  for (int i = 0; i < 33; ++i) EXPECT_EQ(AppendRingtone(kPath), 0);
  EXPECT_EQ(LastPlaylist()->count, 33);
  EXPECT_EQ(LastPlaylist()->capacity, 64);
  EXPECT_EQ(List().size(), 33u);
}

TEST_F(RingtoneImport, ThePathGoesIntoTheScriptAsGiven) {
  const char* path = "/a/%@ %s \\ \"q\"\n\xC3\xA9\xFF.m4r";
  EXPECT_EQ(AppendRingtone(path), 0);
  const std::string script = runner.Kept("script");
  EXPECT_EQ(script, RingtoneScript(path));
  EXPECT_EQ(script.find(path), std::string_view("set Ringtone to (POSIX file \"").size());
  EXPECT_EQ(List().back().location, path);
}

// ---- Each answer and its message ----------------------------------------------------------------

TEST_F(RingtoneImport, ANullPathAnswersZeroWithoutAMessage) {
  const CapturedStderr log;
  EXPECT_EQ(AppendRingtone(nullptr), 0);
  EXPECT_EQ(log.Text(), "");
  EXPECT_EQ(runner.Kept("script"), "");
  EXPECT_THAT(List(), IsEmpty());
}

TEST_F(RingtoneImport, ANullPathGivenToTheImplementationAnswersMinusOne) {
  const CapturedStderr log;
  EXPECT_EQ(AppendRingtoneImp(nullptr), -1);
  EXPECT_THAT(log.Messages(), ElementsAre(kNoPath));
  EXPECT_EQ(runner.Kept("script"), "");
}

TEST_F(RingtoneImport, AScriptInErrorAnswersMinusOne) {
  const StandInRunner failing("cat > \"$0.script\"; exit 1");
  const CapturedStderr log;
  EXPECT_EQ(AppendRingtone(kPath), -1);
  EXPECT_THAT(log.Messages(), ElementsAre(kNotRun));
  EXPECT_EQ(failing.Kept("script"), kScript);
  EXPECT_THAT(List(), IsEmpty());
}

// A runner that understands the first line as the real one does: a text in double quotes.
TEST_F(RingtoneImport, APathWithADoubleQuoteMalformsTheScript) {
  const StandInRunner strict(
      "IFS= read -r line\n"
      "printf '%s\\n' \"$line\" | grep -q '^set Ringtone to (POSIX file \"[^\"]*\")$'\n");
  EXPECT_EQ(AppendRingtone(kPath), 0);
  const CapturedStderr log;
  EXPECT_EQ(AppendRingtone("/tones/a\"b.m4r"), -1);
  EXPECT_THAT(log.Messages(), ElementsAre(kNotRun));
}

TEST_F(RingtoneImport, WithoutARunnerItAnswersMinusOne) {
  const ScopedVariable path("PATH", scene.home().path().c_str());
  const CapturedStderr log;
  EXPECT_EQ(AppendRingtone(kPath), -1);
  EXPECT_EQ(AppendRingtone("no-slash"), -1);
  EXPECT_THAT(log.Messages(), ElementsAre(kNotRun, kNotRun));
  EXPECT_THAT(List(), IsEmpty());
}

TEST_F(RingtoneImport, APathWithoutASlashRunsTheScriptAndAnswersOne) {
  for (const char* path : {"tone.m4r", ""}) {
    const StandInRunner recording(kRecord);
    const CapturedStderr log;
    EXPECT_EQ(AppendRingtone(path), 1);
    EXPECT_THAT(log.Messages(), ElementsAre(kNotListed));
    EXPECT_EQ(recording.Kept("script"), RingtoneScript(path));
  }
  EXPECT_THAT(List(), IsEmpty());
}

// What an import answers when the allocation at that position fails.
struct Answer {
  std::int32_t result;
  std::vector<std::string> messages;
  friend bool operator==(const Answer&, const Answer&) = default;
};

Answer ImportWithFailureAt(std::int64_t allocation) {
  const CapturedStderr log;
  system::faults::FailAfter(allocation, true);
  const std::int32_t result = AppendRingtone(kPath);
  EXPECT_GT(system::faults::Asked(), allocation) << "nothing has failed";
  system::faults::Stop();
  return {result, log.Messages()};
}

// An import's own allocations, in this order; those of C++ are not counted in this program.
enum ImportAllocation { kImportFlag, kImportRecord, kImportName, kImportLocation, kImportTable };

TEST_F(RingtoneImport, WithoutMemoryForTheRunItAnswersMinusOne) {
  EXPECT_EQ(ImportWithFailureAt(kImportFlag), (Answer{-1, {kNotRun}}));
  EXPECT_EQ(runner.Kept("script"), "");
  EXPECT_THAT(List(), IsEmpty());
}

TEST_F(RingtoneImport, WithoutMemoryForTheRecordItAnswersOne) {
  EXPECT_EQ(ImportWithFailureAt(kImportRecord), (Answer{1, {kNotListed}}));
  EXPECT_EQ(runner.Kept("script"), kScript);
  EXPECT_THAT(List(), IsEmpty());
}

TEST_F(RingtoneImport, WithoutMemoryForTheNameItAnswersMinusOneWithoutAMessage) {
  EXPECT_EQ(ImportWithFailureAt(kImportName), (Answer{-1, {}}));
  EXPECT_EQ(runner.Kept("script"), kScript);
  EXPECT_THAT(List(), IsEmpty());
}

TEST_F(RingtoneImport, WithoutMemoryForTheLocationItAnswersMinusOne) {
  EXPECT_EQ(ImportWithFailureAt(kImportLocation), (Answer{-1, {kNotListed}}));
  EXPECT_THAT(List(), IsEmpty());
}

TEST_F(RingtoneImport, WithoutMemoryForThePlaylistsTableItAnswersOne) {
  EXPECT_EQ(ImportWithFailureAt(kImportTable), (Answer{1, {kNotListed}}));
  EXPECT_THAT(List(), IsEmpty());
  EXPECT_EQ(LastPlaylist()->capacity, 0);
  EXPECT_EQ(AppendRingtone(kPath), 0);
  EXPECT_EQ(List().size(), 1u);
}

// ---- Without a ringtone playlist ----------------------------------------------------------------

TEST_F(RingtoneImport, WithoutTheRingtonePlaylistItAnswersOneAndTouchesNoOther) {
  DestroyRingtoneArray();
  const std::vector<Ringtone> before = List();
  const CapturedStderr log;
  EXPECT_EQ(AppendRingtone(kPath), 1);
  EXPECT_THAT(log.Messages(), ElementsAre(kNotListed));
  EXPECT_EQ(runner.Kept("script"), kScript);
  EXPECT_EQ(List(), before);
}

TEST_F(RingtoneImport, WithoutAnyPlaylistInTheFirstGroupItAnswersOne) {
  const std::int32_t count = std::exchange(g_pGlobal->groups[0]->count, 0);
  const CapturedStderr log;
  EXPECT_EQ(AppendRingtone(kPath), 1);
  EXPECT_THAT(log.Messages(), ElementsAre(kNotListed));
  g_pGlobal->groups[0]->count = count;
}

TEST(RingtoneImportWithoutALibrary, RunsTheScriptAndAnswersOne) {
  const RingtoneScene scene;
  std::filesystem::remove(scene.home().PathOf("Music/iTunes/iTunes Music Library.xml"));
  const StandInRunner runner(kRecord);
  const CapturedStderr log;
  EXPECT_EQ(AgentInitializer(), -1);
  EXPECT_EQ(AppendRingtone(kPath), 1);
  EXPECT_EQ(AppendRingtone(nullptr), 0);
  EXPECT_EQ(runner.Kept("script"), kScript);
  EXPECT_THAT(log.Messages(), ElementsAre("Open iTunes Library file error!", kNotListed));
  EXPECT_EQ(AgentFinalizer(), 0);
}

TEST(RingtoneImportBeforeTheFirstLoad, RunsTheScriptAndAnswersOne) {
  GlobalState* state = std::exchange(g_pGlobal, nullptr);
  const StandInRunner runner(kRecord);
  const CapturedStderr log;
  EXPECT_EQ(AppendRingtone(kPath), 1);
  EXPECT_THAT(log.Messages(), ElementsAre(kNotListed));
  g_pGlobal = state;
}

}  // namespace
}  // namespace tavrel
