// A track's properties, read in one walk and one by one: the same record and the same log lines.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "agent/Exports.h"
#include "agent/Lifecycle.h"
#include "library/playlists/PlaylistTable.h"
#include "library/tracks/TrackProperties.h"
#include "system/Memory.h"
#include "tests/reference/LiteralTrackProperties.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/Random.h"
#include "tests/support/RecordSizes.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TemporaryHome.h"
#include "xml/TBXML.h"

using namespace tavrel::test;

namespace {

constexpr const char* kKeys[] = {"Name",         "Location",     "Artist",     "Album",
                                 "Genre",        "Total Time",   "Play Count", "Movie",
                                 "Track Number", "Persistent ID"};

// Everything that the load of a track leaves.
struct Loaded {
  std::array<std::optional<std::string>, 5> texts;
  std::vector<std::int32_t> numbers;
  bool pending = true;

  friend bool operator==(const Loaded&, const Loaded&) = default;
  friend void PrintTo(const Loaded& loaded, std::ostream* stream) {
    for (const auto& text : loaded.texts) *stream << text.value_or("(none)") << " | ";
    *stream << testing::PrintToString(loaded.numbers) << (loaded.pending ? " pending" : "");
  }
};

Loaded See(const TrackRecord& track) {
  const SongInfo& info = track.info;
  Loaded loaded;
  std::size_t next = 0;
  for (const char* text : {info.name, info.location, info.artist, info.album, info.genre}) {
    if (text != nullptr) loaded.texts[next] = text;
    ++next;
  }
  loaded.numbers = {info.nameSize,    info.locationSize, info.artistSize, info.albumSize,
                    info.genreSize,   info.totalTime,    info.playCount,  info.movie,
                    info.trackNumber, info.reserved,     track.trackId};
  loaded.numbers.insert(loaded.numbers.end(), track.persistentId, track.persistentId + 8);
  loaded.pending = track.pendingDict != nullptr;
  return loaded;
}

void ReleaseTexts(const SongInfo& info) {
  for (char* text : {info.name, info.location, info.artist, info.album, info.genre}) free(text);
}

struct Read {
  std::vector<Loaded> tracks;
  std::vector<std::string> log;
};

// From copies of the loaded library's tracks, which are then the caller's own.
template <class Load>
Read ReadWith(Load load) {
  Read read;
  const CapturedStderr log;
  for (std::int32_t i = 0; i < g_pGlobal->trackCount; ++i) {
    TrackRecord copy = *g_pGlobal->tracks[i];
    load(copy);
    read.tracks.push_back(See(copy));
    ReleaseTexts(copy.info);
  }
  read.log = log.Messages();
  return read;
}

Read ReadInOneWalk() {
  Read read;
  const CapturedStderr log;
  for (std::int32_t i = 0; i < g_pGlobal->trackCount; ++i) {
    tavrel::LoadTrackProperties(*g_pGlobal->tracks[i], tavrel::loadedState);
    read.tracks.push_back(See(*g_pGlobal->tracks[i]));
  }
  read.log = log.Messages();
  return read;
}

// Both ways, and as the rules state it, on the library file below that home folder. Result: what they read.
Read ReadBothWays(const std::string& home) {
  setenv("HOME", home.c_str(), 1);
  EXPECT_EQ(AgentInitializer(), 0);
  const Read literal = ReadWith(tavrel::reference::LoadTrackPropertiesLiterally);
  const Read plain = ReadWith(tavrel::LoadTrackPropertiesPlainly);
  const Read quick = ReadInOneWalk();
  AgentFinalizer();
  EXPECT_EQ(plain.log, literal.log);
  EXPECT_EQ(plain.tracks, literal.tracks);
  EXPECT_EQ(quick.log, plain.log);
  EXPECT_EQ(quick.tracks, plain.tracks);
  return plain;
}

Read ReadBothWays(const TemporaryHome& home, const std::string& tracks) {
  home.WriteLibrary(LibraryText({tracks, {}}));
  return ReadBothWays(home.path());
}

const std::vector<std::string_view> kTextPieces = {
    "a", "Bc", " ", "&amp;", "&#38;", "&#x2F;", "&#233;", "&", "&nbsp;", ";", "&;", "\u65E5", "7"};
const std::vector<std::string_view> kUrlPieces = {
    "a",  "/",   "%20",   "%C3%A9", "&#38;", "%", "%E9", " ",    "?b",
    "#c", "%00", "&amp;", "&nbsp;", "%2F",   "b", "&",   "c.mp3"};
const std::vector<std::string_view> kUrlStarts = {"file://localhost/", "file:///", "http://host/",
                                                  "file:", ""};
const std::vector<std::string_view> kDigits = {"0", "7", "9", "A", "f", "-", " ", "x", "&#55;"};
const std::vector<std::string_view> kOtherKeys = {
    "Album Artist", "Track Type", "Play Date", "name",     "Nam",   "Names", "",    "A",
    "Play",         "Movi",       "Locations", "Track ID", "Total", "Perl",  "Alb", "Zoo"};

std::string RandomValue(Random& random, std::string_view key) {
  const bool isUrl = key == "Location";
  const bool isText = key == "Name" || key == "Artist" || key == "Album" || key == "Genre";
  const bool isId = key == "Persistent ID";
  if (isUrl) {
    return std::string(kUrlStarts[random.Below(kUrlStarts.size())]) +
           random.Text(kUrlPieces, random.Below(5));
  }
  if (isText) return random.Text(kTextPieces, random.Below(5));
  return random.Text(kDigits, isId ? 13 + random.Below(6) : random.Below(6));
}

std::string RandomPairs(Random& random) {
  std::string pairs;
  for (std::size_t count = random.Below(18); count > 0; --count) {
    const bool isKnown = random.Below(4) > 0;
    const std::string key(isKnown ? kKeys[random.Below(10)]
                                  : kOtherKeys[random.Below(kOtherKeys.size())]);
    switch (random.Below(12)) {
      case 0:
        pairs += BooleanPair(key, random.Below(2) == 0);
        break;
      case 1:
        pairs += "<key>" + key + "</key><string/>";
        break;
      case 2:
        pairs += "<key>" + key + "</key><dict><key>Name</key><string>inner</string></dict>";
        break;
      case 3:
        if (random.Below(8) == 0) pairs += "<key>" + key + "</key>";  // shifts all that follow
        break;
      default:
        pairs += TextPair(key, RandomValue(random, key));
    }
  }
  return pairs;
}

}  // namespace

TEST(TrackProperties, OfTheSampleLibraryAreReadAlikeBothWays) {
  const Read read = ReadBothWays(TAVREL_SAMPLE_HOME);
  EXPECT_GT(read.tracks.size(), 100u);
  EXPECT_EQ(read.log, std::vector<std::string>());
}

TEST(TrackProperties, OfRandomDictionariesAreReadAlikeBothWays) {
  Random random(16);
  const TemporaryHome home;
  std::size_t lines = 0;
  std::size_t texts = 0;
  std::size_t locations = 0;
  for (int round = 0; round < Rounds(1000); ++round) {
    std::string tracks;
    for (int id = 1; id <= 50; ++id) tracks += Track(id, RandomPairs(random));
    const Read read = ReadBothWays(home, tracks);
    lines += read.log.size();
    for (const Loaded& track : read.tracks) {
      texts += track.texts[0].has_value();
      locations += track.texts[1].has_value();
    }
    if (HasFailure()) FAIL() << tracks;
  }
  const auto rounds = static_cast<std::size_t>(Rounds(1000));
  EXPECT_GT(lines, rounds * 10);
  EXPECT_GT(texts, rounds * 10);
  EXPECT_GT(locations, rounds * 5);
}

TEST(TrackProperties, EachKeyIsKnownByItsWholeNameOnly) {
  const TemporaryHome home;
  std::string tracks;
  int id = 0;
  for (const std::string key : kKeys) {
    tracks += Track(++id, TextPair(key, "00112233445566778899"));
    tracks += Track(++id, TextPair(key + "s", "1"));
    tracks += Track(++id, TextPair(key.substr(0, key.size() - 1), "1"));
  }
  const Read read = ReadBothWays(home, tracks);
  ASSERT_EQ(read.tracks.size(), 30u);
  const std::vector<std::int32_t> none(18, 0);
  for (std::size_t i = 0; i < 30; ++i) {
    std::vector<std::int32_t> numbers = read.tracks[i].numbers;
    numbers.erase(numbers.begin() + 10);  // the Track ID
    EXPECT_EQ(numbers == none, i % 3 != 0) << i;
  }
}

TEST(TrackProperties, TextsInErrorAreLoggedInTheOrderOfTheRecord) {
  const TemporaryHome home;
  const Read read = ReadBothWays(
      home, Track(1, TextPair("Persistent ID", "&p") + TextPair("Genre", "&g") +
                         TextPair("Album", "&b") + TextPair("Artist", "&a") +
                         TextPair("Location", "file:///x&l") + TextPair("Name", "&n")));
  std::vector<std::string> expected;
  for (const char* text : {"&n", "file:///x&l", "&a", "&b", "&g", "&p"}) {
    expected.push_back(std::string("XML text \"") + text + "\" Escaping has no ending");
  }
  EXPECT_EQ(read.log, expected);
  EXPECT_EQ(read.tracks[0].texts[1], "/x");
}

TEST(TrackProperties, OfACallersOwnRecordAreTheCallersToRelease) {
  const auto document = TBXML::tbxmlWithXMLString(
      "<dict><key>Name</key><string>x</string><key>Location</key><string>file:///a</string>"
      "</dict>");
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  setenv("HOME", home.path().c_str(), 1);
  for (const bool isLoaded : {false, true, false}) {  // before a load, after it, and unloaded
    if (isLoaded) AgentInitializer();
    ASSERT_EQ(tavrel::loadedState != nullptr, isLoaded);
    TrackRecord track = {};
    track.pendingDict = document->rootXMLElement();
    TrackRecord* tracks[] = {&track};
    PlaylistRecord playlist = {};
    playlist.tracks = tracks;
    playlist.count = playlist.capacity = 1;
    SongInfo info = {};
    EXPECT_EQ(GetSongInfo(&playlist, 0, &info), tavrel::test::kSongInfoSize + 2 + 3);
    EXPECT_STREQ(track.info.name, "x");
    EXPECT_STREQ(track.info.location, "/a");
    ReleaseTexts(track.info);
    if (isLoaded) AgentFinalizer();
  }
}

TEST(TrackProperties, ALoadTakesFewAllocationsForManyTracks) {
  namespace faults = tavrel::system::faults;
  const TemporaryHome home;
  std::string tracks;
  for (int id = 1; id <= 1000; ++id) {
    tracks += Track(id, TextPair("Name", "n") + TextPair("Location", "file:///a%20b") +
                            TextPair("Persistent ID", "0011223344556677"));
  }
  home.WriteLibrary(LibraryText({tracks, {}}));
  setenv("HOME", home.path().c_str(), 1);
  ASSERT_EQ(AgentInitializer(), 0);
  faults::FailAfter(1000000, false);
  const Read read = ReadInOneWalk();
  EXPECT_LT(faults::Asked(), 5);
  faults::Stop();
  EXPECT_EQ(read.tracks.back().texts[1], "/a b");
  AgentFinalizer();
}

TEST(TrackProperties, ReadWhileAnotherLibraryIsLoadedGoWithTheirOwnLibrary) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  setenv("HOME", home.path().c_str(), 1);
  ASSERT_EQ(AgentInitializer(), 0);
  tavrel::LibraryState* first = tavrel::loadedState;
  PlaylistRecord* songs = OpenAllSongs();
  ASSERT_EQ(AgentInitializer(), 0);
  tavrel::LibraryState* second = tavrel::loadedState;
  SongInfo info = {};
  EXPECT_GT(GetSongInfo(songs, 0, &info), 96);
  EXPECT_FALSE(first->trackTexts.Holds(first->tracks[0]->info.name));
  EXPECT_FALSE(second->trackTexts.Holds(first->tracks[0]->info.name));
  for (tavrel::LibraryState* state : {first, second}) {
    tavrel::loadedState = state;
    EXPECT_EQ(AgentFinalizer(), 0);  // a text that is left is a leak
  }
}
