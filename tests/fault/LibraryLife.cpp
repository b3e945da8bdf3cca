#include "tests/fault/LibraryLife.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "agent/Exports.h"
#include "library/playlists/PlaylistTable.h"
#include "library/tracks/TrackTable.h"
#include "tests/fault/InsideLibrary.h"
#include "tests/fault/StateCheck.h"
#include "tests/support/CapturedStderr.h"

namespace tavrel::test {
namespace {

constexpr std::int32_t kKindOfRingtones = 55;
constexpr char kUntouched = '\x5A';
constexpr const char* kImportedPath = "/a/path/that/is/longer/than/a/short/string/My.Tone.m4r";

// Songs whose artwork is asked for: those of the sample that have some are among them.
constexpr std::int32_t kArtworkStride = 8;
constexpr std::int32_t kArtworkFirst = 120;

struct TextField {
  char* SongInfo::*buffer;
  std::int32_t SongInfo::*size;
  SeenText SeenSong::*seen;
};
constexpr std::array<TextField, 5> kTexts = {{
    {&SongInfo::name, &SongInfo::nameSize, &SeenSong::name},
    {&SongInfo::location, &SongInfo::locationSize, &SeenSong::location},
    {&SongInfo::artist, &SongInfo::artistSize, &SeenSong::artist},
    {&SongInfo::album, &SongInfo::albumSize, &SeenSong::album},
    {&SongInfo::genre, &SongInfo::genreSize, &SeenSong::genre},
}};

std::int32_t AskSong(PlaylistRecord* playlist, std::int32_t index, SongInfo& info) {
  return Inside([&] { return GetSongInfo(playlist, index, &info); });
}

// The text that was written into `room`; none when nothing was. It must end within its size.
SeenText TextIn(const std::string& room, std::int32_t size) {
  if (room.find_first_not_of(kUntouched) == std::string::npos) return {size, std::nullopt};
  const std::size_t end = room.find('\0');
  EXPECT_LT(end, static_cast<std::size_t>(size)) << "a text that does not fit its size";
  return {size, room.substr(0, end)};
}

// Asks for the sizes, then for the texts, into rooms of these sizes and one byte more, which must stay.
SeenSong LiveSong(PlaylistRecord* playlist, std::int32_t index) {
  SongInfo info = {};
  const std::int32_t total = AskSong(playlist, index, info);
  std::array<std::string, kTexts.size()> rooms;
  std::int32_t sum = sizeof(SongInfo);
  for (std::size_t i = 0; i < kTexts.size(); ++i) {
    const std::int32_t size = info.*kTexts[i].size;
    EXPECT_GE(size, 0);
    sum += size;
    rooms[i].assign(static_cast<std::size_t>(std::max(size, 0)) + 1, kUntouched);
    info.*kTexts[i].buffer = rooms[i].data();
  }
  EXPECT_EQ(total, sum);
  EXPECT_EQ(AskSong(playlist, index, info), total);
  SeenSong song;
  for (std::size_t i = 0; i < kTexts.size(); ++i) {
    EXPECT_EQ(rooms[i].back(), kUntouched);
    song.*kTexts[i].seen = TextIn(rooms[i], info.*kTexts[i].size);
  }
  song.totalTime = info.totalTime;
  song.playCount = info.playCount;
  song.trackNumber = info.trackNumber;
  song.movie = info.movie;
  return song;
}

std::vector<SeenSong> LiveSongs() {
  PlaylistRecord* all = kLinkedFunctions.openAllSongs();
  std::vector<SeenSong> songs;
  const std::int32_t count = kLinkedFunctions.getSongCount(all);
  for (std::int32_t i = 0; i < count; ++i) {
    songs.push_back(LiveSong(all, i));
    EXPECT_EQ(LiveSong(all, i), songs.back()) << "asked twice";
  }
  return songs;
}

LivedPlaylist LivePlaylist(std::int32_t group, std::int32_t index) {
  const PlaylistRecord* playlist = kLinkedFunctions.openPlaylist(group, index);
  LivedPlaylist lived;
  lived.kind = kLinkedFunctions.getPlaylistKind(playlist);
  const std::int32_t size = kLinkedFunctions.getPlaylistName(group, index, nullptr, 1 << 20);
  std::string room(static_cast<std::size_t>(size) + 1, kUntouched);
  EXPECT_EQ(kLinkedFunctions.getPlaylistName(group, index, room.data(), size), size);
  lived.name = TextIn(room, size);
  for (std::int32_t i = 0; i < kLinkedFunctions.getSongCount(playlist); ++i) {
    lived.trackIds.push_back(playlist->tracks[i]->trackId);
  }
  return lived;
}

bool IsRingtones(std::int32_t group, std::int32_t index) {
  const PlaylistRecord* playlist = kLinkedFunctions.openPlaylist(group, index);
  return group == 0 && index == kLinkedFunctions.getPlaylistCount(0) - 1 && playlist != nullptr &&
         playlist->kind == kKindOfRingtones;
}

std::vector<std::vector<LivedPlaylist>> LiveGroups() {
  std::vector<std::vector<LivedPlaylist>> groups(3);
  for (std::int32_t group = 0; group < 3; ++group) {
    const std::int32_t count = kLinkedFunctions.getPlaylistCount(group);
    for (std::int32_t i = 0; i < count; ++i) {
      if (IsRingtones(group, i)) continue;
      groups[static_cast<std::size_t>(group)].push_back(LivePlaylist(group, i));
    }
  }
  return groups;
}

// What the callback fills; it allocates nothing, since it runs inside the library.
struct Listener {
  std::vector<bool> isPlaced;
  std::size_t calls = 0;
};

std::int32_t Listen(PlaylistRecord* playlist, std::int32_t index, void* context) {
  auto& listener = *static_cast<Listener*>(context);
  if (listener.calls >= listener.isPlaced.size()) return 0;
  if (playlist != nullptr) {
    const TrackRecord* track = g_pGlobal->tracks[listener.calls];
    EXPECT_EQ(playlist->tracks[index], track);
    listener.isPlaced[listener.calls] = true;
  }
  ++listener.calls;
  return 1;
}

LivedSearch LiveSearch(const char* name, const char* artist, const char* album) {
  SongInfo terms = {};
  terms.name = const_cast<char*>(name);
  terms.artist = const_cast<char*>(artist);
  terms.album = const_cast<char*>(album);
  Listener listener;
  const auto tracks = g_pGlobal == nullptr ? 0 : g_pGlobal->trackCount;
  listener.isPlaced.resize(static_cast<std::size_t>(tracks));
  LivedSearch lived;
  lived.count = Inside([&] { return SearchSong(&terms, Listen, &listener); });
  EXPECT_EQ(listener.calls, listener.isPlaced.size()) << "a search calls once for every track";
  lived.isPlaced = std::move(listener.isPlaced);
  return lived;
}

std::vector<LivedSearch> LiveSearches() {
  return {LiveSearch("e", nullptr, nullptr), LiveSearch("a", "ch", "o"),
          LiveSearch(nullptr, "no such artist", nullptr), LiveSearch("\u00e9", nullptr, "s")};
}

LivedArtwork LiveArtwork(ArtworkHandle* (*open)(PlaylistRecord*, std::int32_t), std::int32_t song) {
  PlaylistRecord* all = kLinkedFunctions.openAllSongs();
  ArtworkHandle* handle = Inside([&] { return open(all, song); });
  LivedArtwork lived;
  lived.isFound = handle != nullptr;
  for (std::int32_t i = 0; i < GetArtworkCount(handle); ++i) {
    ArtworkInfo info = {};
    const std::int32_t total = Inside([&] { return GetArtworkInfo(handle, i, &info); });
    EXPECT_EQ(total, info.dataSize + static_cast<std::int32_t>(sizeof(ArtworkInfo)));
    const auto size = static_cast<std::size_t>(std::max(info.dataSize, 0));
    LivedImage image;
    image.bytes.assign(size + 1, '\0');
    info.data = reinterpret_cast<std::uint8_t*>(image.bytes.data());
    EXPECT_EQ(Inside([&] { return GetArtworkInfo(handle, i, &info); }), total);
    EXPECT_EQ(image.bytes.back(), '\0');
    image.bytes.pop_back();
    image.format = info.format;
    image.width = info.width;
    image.height = info.height;
    lived.images.push_back(std::move(image));
  }
  Inside([handle] { CloseArtwork(handle); });
  return lived;
}

std::vector<LivedArtwork> LiveAllArtwork() {
  std::vector<LivedArtwork> artwork;
  const std::int32_t count = kLinkedFunctions.getSongCount(kLinkedFunctions.openAllSongs());
  for (std::int32_t i = 0; i < count; i += i < kArtworkFirst ? 1 : kArtworkStride) {
    artwork.push_back(LiveArtwork(OpenArtwork, i));
    artwork.push_back(LiveArtwork(OpenArtworkAny, i));
  }
  return artwork;
}

PlaylistRecord* Ringtones() {
  const std::int32_t last = kLinkedFunctions.getPlaylistCount(0) - 1;
  return IsRingtones(0, last) ? kLinkedFunctions.openPlaylist(0, last) : nullptr;
}

std::vector<std::string> LiveRingtones() {
  std::vector<std::string> ringtones;
  PlaylistRecord* playlist = Ringtones();
  for (std::int32_t i = 0; i < kLinkedFunctions.getSongCount(playlist); ++i) {
    const SeenSong song = LiveSong(playlist, i);
    ringtones.push_back(song.name.text.value_or("?") + " " + song.location.text.value_or("?"));
  }
  return ringtones;
}

// Lists the file when it answers 0, and changes nothing when it does not.
std::int32_t LiveImport() {
  PlaylistRecord* playlist = Ringtones();
  const std::int32_t before = kLinkedFunctions.getSongCount(playlist);
  const std::int32_t answer = Inside([] { return AppendRingtone(kImportedPath); });
  const std::int32_t after = kLinkedFunctions.getSongCount(playlist);
  EXPECT_EQ(after, answer == 0 ? before + 1 : before);
  if (after > before) {
    EXPECT_EQ(LiveSong(playlist, before).location.text, kImportedPath);
  }
  return answer;
}

}  // namespace

LifeScene::LifeScene() : home_("HOME", TAVREL_SAMPLE_HOME) {}

Life LifeScene::Live() const {
  const CapturedStderr log;
  Life life;
  life.loaded = Inside([] { return AgentInitializer(); });
  EXPECT_TRUE(life.loaded == 0 || life.loaded == -1);
  ExpectConsistentState();
  life.groups = LiveGroups();
  life.searches = LiveSearches();
  life.songs = LiveSongs();
  life.artwork = LiveAllArtwork();
  life.ringtones = LiveRingtones();
  life.imported = LiveImport();
  ExpectConsistentState();
  EXPECT_EQ(Inside([] { return AgentFinalizer(); }), 0);
  life.log = log.Messages();
  return life;
}

}  // namespace tavrel::test
