// Every property of songs, playlists and the library.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "library/tracks/TrackTable.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/PropertySurvey.h"
#include "tests/support/Survey.h"
#include "tests/support/TemporaryHome.h"
#include "tests/support/Texts.h"

namespace tavrel::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Properties : public testing::Test {
 protected:
  void Load(const LibraryParts& parts) {
    home_.WriteLibrary(LibraryText(parts));
    library_.emplace(home_.path());
  }
  // A library of one song, whose dictionary is nothing but these pairs.
  void LoadOne(const std::string& pairs) { Load({"<key>1</key><dict>" + pairs + "</dict>", {}}); }
  const HostFunctions& functions() { return library_->functions(); }
  PlaylistRecord* All() { return functions().openAllSongs(); }
  SeenPairs OfSong(std::int32_t index = 0) { return SeeSongProperties(functions(), All(), index); }
  SeenPairs OfPlaylist(const std::string& name) {
    return SeePlaylistProperties(functions(), PlaylistNamed(functions(), name));
  }
  std::int32_t SizeOf(const char* key) {
    return functions().getSongProperty(All(), 0, key, nullptr, 0);
  }

  const TemporaryHome home_;
  std::optional<LoadedLibrary> library_;
};

constexpr auto kNoText = std::nullopt;

TEST_F(Properties, AreToldOfEveryKindOfValueInTheFilesOrder) {
  LoadOne(
      "<key>Track ID</key><integer>101</integer><key>Name</key><string>Rock &amp; Roll</string>"
      "<key>Volume</key><real>0.50</real><key>Date Added</key><date>2009-11-05T08:13:42Z</date>"
      "<key>Loved</key><true/><key>Disabled</key><false/><key>Art</key><data> AAEC </data>"
      "<key>List</key><array><string>x</string></array><key>More</key><dict><key>Name</key>"
      "<string>inner</string></dict><key>Nothing</key><string/><key>Empty</key><string></string>"
      "<key>Section</key><string><![CDATA[a <b> &amp; "
      "c]]></string><key>Other</key><odd>kind</odd>");
  EXPECT_THAT(
      OfSong(),
      ElementsAre(SeenPair{"Track ID", "101", "integer"}, SeenPair{"Name", "Rock & Roll", "string"},
                  SeenPair{"Volume", "0.50", "real"},
                  SeenPair{"Date Added", "2009-11-05T08:13:42Z", "date"},
                  SeenPair{"Loved", "true", "true"}, SeenPair{"Disabled", "false", "false"},
                  SeenPair{"Art", kNoText, "data"}, SeenPair{"List", kNoText, "array"},
                  SeenPair{"More", kNoText, "dict"}, SeenPair{"Nothing", kNoText, "string"},
                  SeenPair{"Empty", "", "string"}, SeenPair{"Section", "a <b> & c", "string"},
                  SeenPair{"Other", "kind", "odd"}));
}

TEST_F(Properties, HaveTheSizeOfTheDecodedText) {
  LoadOne(TextPair("Name", "AC&amp;DC") + TextPair("Album", "") + TextPair("Genre", "&#0;"));
  EXPECT_EQ(SizeOf("Name"), 6);
  EXPECT_EQ(SizeOf("Album"), 1);
  EXPECT_EQ(SizeOf("Genre"), 1);
  EXPECT_EQ(SizeOf("Artist"), 0);
  EXPECT_EQ(OfSong().size(), 3u);
}

TEST_F(Properties, OfEqualKeysTheFirstIsToldAndAllAreVisited) {
  LoadOne(TextPair("A", "first") + TextPair("A", "second") + "<key>B</key><string/>" +
          TextPair("B", "hidden"));
  const SeenPairs pairs = OfSong();
  ASSERT_EQ(pairs.size(), 4u);
  EXPECT_EQ(pairs[1].text, "second");
  EXPECT_EQ(SizeOf("A"), 6);
  EXPECT_EQ(SizeOf("B"), 0) << "the first has no text, and is the first all the same";
}

TEST_F(Properties, AreKnownByTheirDecodedKeys) {
  LoadOne(TextPair("A &amp; B", "1") + TextPair("&lt;", "2") + TextPair("ab&#0;", "3") +
          "<key/><string>4</string>" + TextPair("caf\u00e9", "5"));
  EXPECT_THAT(OfSong(), ElementsAre(SeenPair{"A & B", "1", "string"}, SeenPair{"<", "2", "string"},
                                    SeenPair{"ab", "3", "string"}, SeenPair{"", "4", "string"},
                                    SeenPair{"caf\u00e9", "5", "string"}));
  for (const char* key : {"A &amp; B", "A", "A & ", "A & B ", "a & b", "ab&#0;", "a", "abc"}) {
    EXPECT_EQ(SizeOf(key), 0) << key;
  }
}

TEST_F(Properties, InErrorEndThereAndAreLoggedEachTimeTheyAreAskedFor) {
  LoadOne(TextPair("K & K", "fine") + TextPair("Name", "Beat & It") +
          TextPair("Album", "a &nbsp; b") + TextPair("Genre", "fine &amp; well"));
  const std::string key = "XML text \"K & K\" Escaping has no ending";
  const std::string name = "XML text \"Beat & It\" Escaping has no ending";
  const std::string album = "XML text \"&nbsp; b\" Escaping has no numeric";
  {
    const CapturedStderr log;
    char text[8] = "#######";
    EXPECT_EQ(SizeOf("Name"), 6);
    EXPECT_EQ(functions().getSongProperty(All(), 0, "Name", text, 6), 6);
    EXPECT_EQ(std::string(text, 8), std::string("Beat \0#", 8));
    EXPECT_EQ(SizeOf("Genre"), 12);
    EXPECT_EQ(SizeOf("Album"), 3);
    EXPECT_EQ(SizeOf("K "), 5);
    EXPECT_THAT(log.Messages(), ElementsAre(name, name, album));
  }
  const CapturedStderr log;
  const auto visit = [](const char*, const char*, const char*, void*) { return std::int32_t{1}; };
  EXPECT_EQ(functions().visitSongProperties(All(), 0, visit, nullptr), 4);
  EXPECT_THAT(log.Messages(), ElementsAre(key, name, album));
}

TEST_F(Properties, OfABadPositionAreNone) {
  LoadOne(TextPair("Name", "x"));
  for (const std::int32_t index : {1, -1, INT32_MIN, INT32_MAX}) {
    EXPECT_THAT(OfSong(index), IsEmpty());
    EXPECT_EQ(functions().getSongProperty(All(), index, "Name", nullptr, 0), 0);
  }
  EXPECT_THAT(SeeSongProperties(functions(), nullptr, 0), IsEmpty());
  EXPECT_THAT(SeePlaylistProperties(functions(), nullptr), IsEmpty());
}

TEST_F(Properties, OfASongAreTheSameThroughEveryPlaylist) {
  home_.WriteLibrary(SmallLibraryText());
  library_.emplace(home_.path());
  const SeenPairs rock = OfSong(1);
  EXPECT_EQ(TextOf(rock, "Location"), "file://localhost/Users/x/Caf%C3%A9.m4a")
      << "as it is written";
  PlaylistRecord* playlist = PlaylistNamed(functions(), "Rock & Roll");
  EXPECT_EQ(SeeSongProperties(functions(), playlist, 0), rock);
  EXPECT_EQ(SeeSongProperties(functions(), playlist, 1), OfSong(0));
}

TEST_F(Properties, OfPlaylistsAreThoseOfTheirOwnDictionary) {
  std::string playlists = Playlist(TextPair("Name", "Library") + BooleanPair("Visible", false));
  for (int i = 0; i < 70; ++i) {
    const std::string id = std::to_string(1000 + i);
    playlists += Playlist(TextPair("Name", "p" + id) + TextPair("Playlist Persistent ID", id) +
                              IntegerPair("Distinguished Kind", i % 3 == 0   ? 4
                                                                : i % 3 == 1 ? 26
                                                                             : 0) +
                              BooleanPair("Folder", i % 2 == 0),
                          {1});
  }
  Load({Track(1), playlists});
  for (int i = 0; i < 70; ++i) {
    const std::string id = std::to_string(1000 + i);
    const SeenPairs pairs = OfPlaylist("p" + id);
    ASSERT_EQ(pairs.size(), 5u);
    EXPECT_EQ(TextOf(pairs, "Playlist Persistent ID"), id);
    EXPECT_EQ(TextOf(pairs, "Folder"), i % 2 == 0 ? "true" : "false");
    EXPECT_EQ(pairs.back(), (SeenPair{"Playlist Items", kNoText, "array"}));
  }
}

TEST_F(Properties, OfTheLibraryAreThoseOfTheTopLevelDictionary) {
  Load({Track(1),
        {},
        TextPair("Library Persistent ID", "0123456789ABCDEF") +
            TextPair("Music Folder", "file:///Users/x/R&#38;B/")});
  EXPECT_THAT(
      SeeLibraryProperties(functions()),
      ElementsAre(SeenPair{"Major Version", "1", "integer"},
                  SeenPair{"Show Content Ratings", "true", "true"},
                  SeenPair{"Library Persistent ID", "0123456789ABCDEF", "string"},
                  SeenPair{"Music Folder", "file:///Users/x/R&B/", "string"},
                  SeenPair{"Tracks", kNoText, "dict"}, SeenPair{"Playlists", kNoText, "array"}));
}

TEST_F(Properties, AreNoneOfWhatTheFileDoesNotHold) {
  const std::string folder = home_.path() + "/Music/iTunes/iTunes Media/Ringtones";
  std::filesystem::create_directories(folder);
  WriteFile(folder + "/Bell.m4r", "");
  LoadOne(TextPair("Name", "x"));
  PlaylistRecord* ringtones = functions().openPlaylist(0, functions().getPlaylistCount(0) - 1);
  ASSERT_EQ(functions().getPlaylistKind(ringtones), 55);
  ASSERT_EQ(functions().getSongCount(ringtones), 1);
  EXPECT_THAT(SeePlaylistProperties(functions(), ringtones), IsEmpty());
  EXPECT_THAT(SeeSongProperties(functions(), ringtones, 0), IsEmpty());
  EXPECT_THAT(SeePlaylistProperties(functions(), All()), IsEmpty());
}

TEST_F(Properties, AreNoneWithoutALibraryFile) {
  const CapturedStderr log;
  library_.emplace(home_.path());
  EXPECT_THAT(SeeLibraryProperties(functions()), IsEmpty());
  EXPECT_THAT(OfSong(), IsEmpty());
}

TEST_F(Properties, AreReadWithoutLoadingThoseOfTheSongRecord) {
  LoadOne(IntegerPair("Track ID", 1) + TextPair("Name", "AC&amp;DC") + IntegerPair("Rating", 80));
  const TrackRecord& track = *library_->Global()->tracks[0];
  const auto* pending = track.pendingDict;
  ASSERT_NE(pending, nullptr);
  const SeenPairs before = OfSong();
  EXPECT_EQ(track.pendingDict, pending);
  EXPECT_EQ(track.info.name, nullptr);
  EXPECT_EQ(SeeSong(functions(), All(), 0).name, (SeenText{10, "AC&DC"}));
  EXPECT_EQ(track.pendingDict, nullptr);
  EXPECT_EQ(OfSong(), before);
}

// Visits the same song again at each pair, three calls deep, and looks at the texts of each call afterwards.
struct Nested {
  const HostFunctions& library;
  int depth = 0;
  int calls = 0;
};

std::int32_t VisitAgain(const char* key, const char* text, const char*, void* context) {
  auto& nested = *static_cast<Nested*>(context);
  ++nested.calls;
  const std::string keyBefore = key;
  const std::string textBefore = text;
  if (nested.depth < 3) {
    Nested deeper{nested.library, nested.depth + 1};
    const PlaylistRecord* all = nested.library.openAllSongs();
    EXPECT_EQ(nested.library.visitSongProperties(all, 0, VisitAgain, &deeper), 3);
    char room[4000];
    EXPECT_GT(nested.library.getSongProperty(all, 0, key, room, sizeof room), 0);
    EXPECT_STREQ(text, nested.calls == 1 ? "A&B" : room);
  }
  EXPECT_EQ(key, keyBefore);
  EXPECT_EQ(text, textBefore);
  return 1;
}

TEST_F(Properties, VisitsMayBeMadeInVisits) {
  LoadOne(TextPair("K&amp;K", "A&amp;B") + TextPair("long", Repeated("&lt;", 600)) +
          TextPair("longer", Repeated("&lt;&gt;", 900)));
  Nested nested{functions()};
  EXPECT_EQ(functions().visitSongProperties(All(), 0, VisitAgain, &nested), 3);
  EXPECT_EQ(nested.calls, 3);
}

// What is remembered here does not count as a leak.
GlobalState* abandoned;

TEST_F(Properties, AVisitGoesOnWhereItIsWhenTheVisitorLoadsAnotherLibrary) {
  LoadOne(TextPair("A", "1") + TextPair("B", "2") + TextPair("C", "3"));
  struct Scene {
    decltype(&AgentInitializer) load;
    std::vector<std::string> texts;
  } scene = {library_->Get<decltype(&AgentInitializer)>("AgentInitializer"), {}};
  const PlaylistRecord* former = All();
  abandoned = library_->Global();
  home_.WriteLibrary(LibraryText({Track(1, TextPair("A", "new")), {}}));
  const auto load = [](const char*, const char* text, const char*, void* context) {
    auto& inside = *static_cast<Scene*>(context);
    inside.texts.emplace_back(text);
    return inside.texts.size() == 1 ? inside.load() + 1 : 1;
  };
  EXPECT_EQ(functions().visitSongProperties(former, 0, load, &scene), 3);
  EXPECT_THAT(scene.texts, ElementsAre("1", "2", "3"));
  EXPECT_THAT(SeeSongProperties(functions(), former, 0), IsEmpty())
      << "of a library before this one";
  EXPECT_EQ(TextOf(OfSong(), "A"), "new");
}

TEST_F(Properties, VisitorsGetTheirContextAndEndTheVisit) {
  LoadOne(TextPair("A", "1") + TextPair("B", "2") + TextPair("C", "3"));
  int left = 2;
  const auto countDown = [](const char*, const char*, const char*, void* context) {
    return std::int32_t{--*static_cast<int*>(context)};
  };
  EXPECT_EQ(functions().visitSongProperties(All(), 0, countDown, &left), 2);
  EXPECT_EQ(left, 0);
}

// ---- FindSongs -----------------------------------------------------------------------------------

std::vector<std::int32_t> Found(const HostFunctions& library, const SongInfo& terms) {
  std::vector<std::int32_t> found;
  const auto keep = [](std::int32_t index, void* context) {
    static_cast<std::vector<std::int32_t>*>(context)->push_back(index);
    return std::int32_t{1};
  };
  const std::int32_t count = library.findSongs(&terms, keep, &found);
  EXPECT_EQ(count, static_cast<std::int32_t>(found.size()));
  return found;
}

TEST_F(Properties, SongsAreFoundByTheirPositionAmongAllSongs) {
  home_.WriteLibrary(SmallLibraryText());
  library_.emplace(home_.path());
  SongInfo terms = {};
  char term[] = "ROLL";
  char other[] = "satie";
  terms.name = term;
  terms.artist = other;
  const std::vector<std::int32_t> found = Found(functions(), terms);
  EXPECT_THAT(found, ElementsAre(0, 1));
  EXPECT_EQ(TextOf(OfSong(found[1]), "Name"), "Rock & Roll");
  terms.artist = nullptr;
  EXPECT_THAT(Found(functions(), terms), ElementsAre(1));
  terms.name = nullptr;
  EXPECT_THAT(Found(functions(), terms), IsEmpty());
  const auto stop = [](std::int32_t, void*) { return std::int32_t{0}; };
  EXPECT_EQ(functions().findSongs(nullptr, stop, nullptr), 0);
  EXPECT_EQ(functions().findSongs(&terms, nullptr, nullptr), 0);
}

}  // namespace
}  // namespace tavrel::test
