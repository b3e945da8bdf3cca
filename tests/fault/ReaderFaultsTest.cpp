// The readers of the library model while memory runs out, each on its own.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "agent/Exports.h"
#include "library/State.h"
#include "library/file/PropertyList.h"
#include "library/file/PropertyValue.h"
#include "library/playlists/PlaylistTable.h"
#include "tests/fault/FailingNew.h"
#include "tests/support/CapturedStderr.h"
#include "xml/TBXML.h"

using namespace tavrel::test;
namespace faults = tavrel::system::faults;

namespace {

// Reads the value of K from a dictionary with that pair; the text pointer starts as `untouched`.
struct Reading {
  std::int32_t result = 0;
  std::int32_t value = -7;
  char* text = nullptr;
};

class ReaderFaults : public testing::Test {
 protected:
  void SetValue(const std::string& value) {
    document_ =
        TBXML::tbxmlWithXMLString("<dict><key>K</key><string>" + value + "</string></dict>");
  }
  Reading Read(char* untouched, std::int32_t flags) {
    Reading reading;
    reading.text = untouched;
    reading.result = Inside([&] {
      return ReadSongProp(document_->rootXMLElement(), "K", &reading.text, &reading.value, flags);
    });
    return reading;
  }
  // With every allocation failing: the whole text, or nothing at all.
  void ExpectTextOrNothing(std::int32_t flags, const std::string& text, std::int32_t result) {
    char mine[] = "mine";
    WithEachAllocationFailing(1, [&] {
      const Reading reading = Read(mine, flags);
      if (reading.text == mine) {
        EXPECT_EQ(reading.result, 0);
        EXPECT_EQ(reading.value, 0);
        return;
      }
      EXPECT_EQ(reading.result, result);
      EXPECT_EQ(reading.value, result + 1);
      EXPECT_EQ(reading.text, text);
      tavrel::system::Release(reading.text);
    });
  }

  std::unique_ptr<TBXML> document_;
};

}  // namespace

TEST_F(ReaderFaults, ATextIsWholeOrMissing) {
  SetValue("a text that is longer than any string object holds in itself &#38; more");
  ExpectTextOrNothing(SONGPROP_TEXT,
                      "a text that is longer than any string object holds in itself & more", 71);
}

TEST_F(ReaderFaults, APathIsWholeOrMissing) {
  SetValue("file:///a/path/that/is/longer/than/any/string/object/holds/in/itself.mp3");
  ExpectTextOrNothing(SONGPROP_TEXT | SONGPROP_URL,
                      "/a/path/that/is/longer/than/any/string/object/holds/in/itself.mp3", 65);
}

TEST_F(ReaderFaults, ATextWithoutAPlaceForItIsReleased) {
  SetValue("text");
  WithEachAllocationFailing(1, [this] {
    std::int32_t value = 0;
    Inside([&] {
      return ReadSongProp(document_->rootXMLElement(), "K", nullptr, &value, SONGPROP_TEXT);
    });
  });
}

TEST_F(ReaderFaults, ANumberNeedsNoMemory) {
  SetValue("42");
  faults::FailAfter(0, false);
  const Reading reading = Read(nullptr, 0);
  const std::int64_t asked = faults::Asked();
  faults::Stop();
  EXPECT_EQ(reading.value, 42);
  EXPECT_EQ(asked, 0);
}

TEST_F(ReaderFaults, AnErrorInATextIsLoggedWithoutMemory) {
  SetValue("a &broken; text");
  const CapturedStderr log;
  faults::FailAfter(1, false);  // the text's own memory is there
  const Reading reading = Read(nullptr, SONGPROP_TEXT);
  faults::Stop();
  EXPECT_STREQ(reading.text, "a ");
  tavrel::system::Release(reading.text);
  EXPECT_EQ(log.Messages().size(), 1u);
}

TEST_F(ReaderFaults, ASongKeepsWhatCouldBeRead) {
  const auto document = TBXML::tbxmlWithXMLString(
      "<dict><key>Track ID</key><integer>1</integer>"
      "<key>Name</key><string>the name</string><key>Artist</key><string>the artist</string>"
      "<key>Location</key><string>file:///the/location/of/the/song/is/somewhere/else</string>"
      "<key>Play Count</key><integer>5</integer>"
      "<key>Persistent ID</key><string>00000000000000FF</string></dict>");
  WithEachAllocationFailing(4, [&document] {
    TrackRecord track = {};
    track.pendingDict = document->rootXMLElement();
    TrackRecord* tracks[] = {&track};
    PlaylistRecord playlist = {};
    playlist.tracks = tracks;
    playlist.capacity = playlist.count = 1;
    SongInfo info = {};
    const std::int32_t total = Inside([&] { return GetSongInfo(&playlist, 0, &info); });
    EXPECT_EQ(total, 96 + info.nameSize + info.locationSize + info.artistSize);
    EXPECT_TRUE(info.nameSize == 9 || (info.nameSize == 0 && track.info.name == nullptr));
    EXPECT_TRUE(info.artistSize == 11 || (info.artistSize == 0 && track.info.artist == nullptr));
    EXPECT_TRUE(info.locationSize == 44 || (info.locationSize == 0 && !track.info.location));
    EXPECT_EQ(info.playCount, 5);
    EXPECT_EQ(track.pendingDict, nullptr);
    for (char* text : {track.info.name, track.info.location, track.info.artist}) {
      tavrel::system::Release(text);
    }
  });
}

TEST_F(ReaderFaults, APlaylistKeepsTheFirstOfItsTracks) {
  TrackRecord track = {};
  track.trackId = 1;
  TrackRecord* tracks[] = {&track};
  GlobalState state = {};
  state.tracks = tracks;
  state.trackCapacity = state.trackCount = 1;
  g_pGlobal = &state;
  std::string items;
  for (int i = 0; i < 300; ++i) items += "<dict><k/><i>1</i></dict>";
  const auto document = TBXML::tbxmlWithXMLString("<dict><array>" + items + "</array></dict>");
  WithEachAllocationFailing(3, [&document] {
    PlaylistRecord playlist = {};
    Inside([&] { return CreatePlaylistTrack(&playlist, document->rootXMLElement()); });
    EXPECT_EQ(playlist.capacity % 32, 0);
    EXPECT_LE(playlist.count, playlist.capacity);
    EXPECT_EQ(playlist.tracks == nullptr, playlist.capacity == 0);
    tavrel::system::Release(playlist.tracks);
  });
  g_pGlobal = nullptr;
}
