// A host that lets g_pGlobal lead to nothing, or to a record of its own.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tests/support/CapturedStderr.h"
#include "tests/support/GuardedPages.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/StandInRunner.h"
#include "tests/support/WholeUse.h"

namespace tavrel::test {
namespace {

// The builders, the destroyers and what else works on the global record.
void CallWhatWorksOnTheRecord(const LoadedLibrary& library) {
  for (const char* name : {"CreateTrackArray", "CreatePlaylistArray", "CreateRingtoneArray",
                           "CreateArtworkArray", "DestroyArtworkArray", "DestroyRingtoneArray",
                           "DestroyTrackArray", "DestroyPlaylistArray"}) {
    EXPECT_EQ(library.Get<std::int32_t (*)()>(name)(), 0) << name;
  }
  EXPECT_EQ(library.Get<void* (*)()>("OpenXML")(), nullptr);
  std::int32_t index = 0;
  static_cast<void>(library.Get<PlaylistRecord* (*)(std::int32_t, std::int32_t*)>(
      "GetPlaylistByTrackId")(-7, &index));
}

// A record that nothing stands behind: a read or write there ends the test.
class LoneRecord {
 public:
  explicit LoneRecord(const GlobalState& copied) {
    // Its last byte is the last of a pointer, which is zero, as the pages' last byte is.
    const std::string_view bytes(reinterpret_cast<const char*>(&copied), sizeof copied - 1);
    record_ = reinterpret_cast<GlobalState*>(pages_.PlaceAtEnd(bytes));
  }
  [[nodiscard]] GlobalState* get() const { return record_; }

 private:
  GuardedPages pages_{sizeof(GlobalState)};
  GlobalState* record_;
};

}  // namespace

TEST(HostsRecord, LeavesTheLibraryAlive) {
  const ScopedVariable home("HOME", TAVREL_SAMPLE_HOME);
  const StandInRunner runner("exit 0");
  const CapturedStderr log;
  LoadedLibrary library;
  const std::string expected = UseEverything(FunctionsOf(library));
  GlobalState*& global = *library.Get<GlobalState**>("g_pGlobal");
  GlobalState* const made = global;
  const std::int32_t playlists = library->getPlaylistCount(2);
  const LoneRecord empty{GlobalState{}};
  const LoneRecord copied{*made};
  for (GlobalState* set : {static_cast<GlobalState*>(nullptr), empty.get(), copied.get()}) {
    global = set;
    static_cast<void>(UseEverything(FunctionsOf(library)));
    EXPECT_EQ(Import(FunctionsOf(library)), 1) << "there is nothing to list it in";
    CallWhatWorksOnTheRecord(library);
    EXPECT_EQ(library->getPlaylistCount(2), set == copied.get() ? playlists : 0);
    global = made;
    EXPECT_TRUE(UseEverything(FunctionsOf(library)) == expected);
  }
  EXPECT_EQ(library.Unload(), 0);
}

}  // namespace tavrel::test
