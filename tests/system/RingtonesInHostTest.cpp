// Ringtones as a host of the built library sees them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/CapturedStderr.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/StandInRunner.h"
#include "tests/support/Survey.h"

namespace tavrel::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kSampleHome = TAVREL_SAMPLE_HOME;

PlaylistRecord* Ringtones(const LoadedLibrary& library) {
  return library->openPlaylist(0, library->getPlaylistCount(0) - 1);
}

auto AppendRingtoneOf(const LoadedLibrary& library) {
  return library.Get<decltype(&AppendRingtone)>("AppendRingtone");
}

TEST(RingtonesInHost, TheSampleLibrarysRingtonesAreListed) {
  const LoadedLibrary library(kSampleHome);
  EXPECT_EQ(library->getPlaylistKind(Ringtones(library)), 55);
  char name[10] = {};
  EXPECT_EQ(library->getPlaylistName(0, library->getPlaylistCount(0) - 1, name, sizeof name), 10);
  EXPECT_STREQ(name, "Ringtones");
  EXPECT_THAT(SongNames(library.functions(), Ringtones(library)),
              ElementsAre("", "Bell", "Canon", "F\u00fcr Elise", "Gymnope\u0301die No",
                          "Tra\u0308umerei", "notes", "\u041a\u0430\u043b\u0438\u043d\u043a\u0430",
                          "\u8352\u57ce\u306e\u6708"));
}

TEST(RingtonesInHost, AnAddedRingtoneIsSeenThroughTheOpenHandle) {
  const StandInRunner runner(kRecord);
  const LoadedLibrary library(kSampleHome);
  PlaylistRecord* ringtones = Ringtones(library);
  const std::int32_t count = library->getSongCount(ringtones);
  const CapturedStderr log;
  EXPECT_EQ(AppendRingtoneOf(library)("/Users/u/Tones/My.Tone.m4r"), 0);
  EXPECT_EQ(library->getSongCount(ringtones), count + 1);
  const SeenSong song = SeeSong(library.functions(), ringtones, count);
  EXPECT_EQ(song.name, (SeenText{8, "My.Tone"}));
  EXPECT_EQ(song.location, (SeenText{27, "/Users/u/Tones/My.Tone.m4r"}));
  EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST(RingtonesInHost, ANullPathAnswersLikeSuccessButNotToTheImplementation) {
  const LoadedLibrary library(kSampleHome);
  const CapturedStderr log;
  EXPECT_EQ(AppendRingtoneOf(library)(nullptr), 0);
  EXPECT_THAT(log.Messages(), IsEmpty());
  EXPECT_EQ(library.Get<decltype(&AppendRingtone)>("AppendRingtoneImp")(nullptr), -1);
  EXPECT_THAT(log.Messages(), ElementsAre("Add ringtone to iTunes failed as pszPath == 0."));
}

TEST(RingtonesInHost, BuilderAndDestroyerAreExported) {
  using Step = std::int32_t (*)();
  const LoadedLibrary library(kSampleHome);
  const std::int32_t count = library->getPlaylistCount(0);
  EXPECT_EQ(library.Get<Step>("DestroyRingtoneArray")(), 0);
  EXPECT_EQ(library->getPlaylistCount(0), count - 1);
  EXPECT_EQ(library.Get<Step>("CreateRingtoneArray")(), 0);
  EXPECT_EQ(library->getPlaylistCount(0), count);
}

}  // namespace
}  // namespace tavrel::test
