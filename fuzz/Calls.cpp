// A life of arbitrary calls with arbitrary arguments, as far as the interface lets a host make them: every
// exported function, callbacks that call again, the import of ringtones through a stand-in runner.
#include <stdlib.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "agent/Exports.h"
#include "fuzz/Choices.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/InputFile.h"
#include "library/file/PropertyList.h"
#include "library/playlists/PlaylistTable.h"
#include "library/tracks/TrackTable.h"
#include "tests/support/LibraryTexts.h"
#include "xml/TBXML.h"

using tavrel::fuzz::Choices;
using tavrel::fuzz::Require;

namespace {

constexpr std::int32_t kGroups = 3;

std::size_t lives = 0;  // inputs so far

std::string SmallLibrary() {
  using namespace tavrel::test;
  const auto id = [](std::size_t i) {
    return TextPair("Persistent ID", tavrel::fuzz::kTrackIds[i]);
  };
  // Ringtones have the ID 0 as well.
  const std::string tracks = Track(0, TextPair("Name", "aB")) +
                             Track(1, id(0) + TextPair("Name", "B&#38;C")) +
                             Track(2, id(1) + TextPair("Artist", "caf\u00E9")) +
                             Track(7, TextPair("Location", "file:///a%20b"));
  const std::string playlists =
      Playlist(TextPair("Name", "x") + IntegerPair("Distinguished Kind", 4), {1, 7}) +
      Playlist(IntegerPair("Distinguished Kind", 26), {2}) + Playlist("", {});
  return LibraryText(
      {tracks, playlists, TextPair("Library Persistent ID", tavrel::fuzz::kLibraryId)});
}

// Homes for the library file, and folders with a runner that succeeds, one that fails, and none.
class Surroundings {
 public:
  Surroundings() : small_(SmallLibrary()) {
    for (const char* runner : {"true", "false"}) {
      const std::string folder = home_.folder() + "/" + runner;
      std::filesystem::create_directory(folder);
      std::filesystem::create_symlink(std::string("/bin/") + runner, folder + "/osascript");
    }
  }
  void Load(std::size_t which) const {
    constexpr std::string_view kOthers[] = {"", "<plist/>", "\xFF"};
    home_.WriteLibrary(which < 5 ? std::string_view(small_) : kOthers[which - 5]);
    AgentInitializer();
  }
  void Import(std::size_t which, const char* path) const {
    constexpr const char* kRunners[] = {"/true", "/false", "/none"};
    setenv("PATH", (home_.folder() + kRunners[which]).c_str(), 1);
    AppendRingtone(path);
  }

 private:
  tavrel::fuzz::InputHome home_;
  std::string small_;
};

// One input: what it has open, and the calls that it makes.
class Life {
 public:
  Life(const Surroundings& surroundings, std::string_view input)
      : surroundings_(surroundings), choices_(input) {
    surroundings_.Load(0);
  }
  Life(const Life&) = delete;
  Life& operator=(const Life&) = delete;
  ~Life() {
    CloseAll();
    AgentFinalizer();
  }
  void Run() {
    while (!choices_.IsEmpty()) Call();
  }

 private:
  void Call();
  void ListPlaylist();
  void ReadSong();
  void ReadProperty();
  void OpenOrCloseArtwork();
  void ReadArtwork();
  void Search();
  void Import();
  void Read();
  void ReadDictionary();
  void Rebuild();
  void FillPlaylist();
  void LoadAnew();

  PlaylistRecord* AnyPlaylist();
  const TBXMLElement* AnyElement();
  void CloseAll();
  static std::int32_t Listen(PlaylistRecord* playlist, std::int32_t index, void* context);
  static std::int32_t Hear(std::int32_t index, void* context);
  static std::int32_t Look(const char* key, const char* text, const char* type, void* context);

  const Surroundings& surroundings_;
  Choices choices_;
  std::array<ArtworkHandle*, 4> artwork_ = {};
  int depth_ = 0;
};

void Life::Call() {
  constexpr void (Life::*kCalls[])() = {
      &Life::ListPlaylist, &Life::ReadSong,       &Life::OpenOrCloseArtwork,
      &Life::ReadArtwork,  &Life::Search,         &Life::Import,
      &Life::Read,         &Life::ReadDictionary, &Life::Rebuild,
      &Life::FillPlaylist, &Life::LoadAnew,       &Life::ReadProperty};
  (this->*kCalls[choices_.Below(std::size(kCalls))])();
}

PlaylistRecord* Life::AnyPlaylist() {
  if (choices_.Below(4) == 0) return OpenAllSongs();
  const std::int32_t group = choices_.Position(kGroups);
  return OpenPlaylist(group, choices_.Position(GetPlaylistCount(group)));
}

// Of the loaded document, or none.
const TBXMLElement* Life::AnyElement() {
  const TBXMLElement* element = tavrel::TopLevelDictionary(g_pGlobal->document);
  for (std::size_t steps = choices_.Below(8); steps > 0 && element != nullptr; --steps) {
    element = choices_.Below(2) == 0 ? element->firstChild : element->nextSibling;
  }
  return element;
}

void Life::ListPlaylist() {
  const std::int32_t group = choices_.Position(kGroups);
  const std::int32_t index = choices_.Position(GetPlaylistCount(group));
  const auto room = static_cast<std::int32_t>(choices_.Below(20));
  const auto name = std::make_unique<char[]>(static_cast<std::size_t>(room));
  GetPlaylistName(group, index, choices_.Below(4) == 0 ? nullptr : name.get(), room);
  PlaylistRecord* playlist = OpenPlaylist(group, index);
  (void)GetPlaylistKind(playlist);
  (void)GetSongCount(playlist);
  Require(ClosePlaylist(playlist) == (playlist != nullptr ? 1 : 0), "A playlist does not close");
}

void Life::ReadSong() {
  PlaylistRecord* playlist = AnyPlaylist();
  const std::int32_t index = choices_.Position(GetSongCount(playlist));
  SongInfo sizes{};
  if (GetSongInfo(playlist, index, &sizes) == 0) return;
  SongInfo info{};
  std::vector<std::unique_ptr<char[]>> buffers;
  const auto add = [&](char*& text, std::int32_t size) {
    if (choices_.Below(4) == 0) return;
    buffers.push_back(std::make_unique<char[]>(static_cast<std::size_t>(size)));
    text = buffers.back().get();
  };
  add(info.name, sizes.nameSize);
  add(info.location, sizes.locationSize);
  add(info.artist, sizes.artistSize);
  add(info.album, sizes.albumSize);
  add(info.genre, sizes.genreSize);
  Require(GetSongInfo(playlist, index, &info) > 0, "A song has gone");
}

void Life::ReadProperty() {
  const PlaylistRecord* playlist = AnyPlaylist();
  const std::int32_t index = choices_.Position(GetSongCount(playlist));
  const std::string key = choices_.Text();
  const auto room = static_cast<std::int32_t>(choices_.Below(20));
  const auto text = std::make_unique<char[]>(static_cast<std::size_t>(room));
  char* buffer = choices_.Below(4) == 0 ? nullptr : text.get();
  const bool visits = choices_.Below(2) == 0;
  const PropertyVisitor visitor = choices_.Below(16) == 1 ? nullptr : Look;
  ++depth_;
  switch (choices_.Below(3)) {
    case 0:
      visits ? VisitSongProperties(playlist, index, visitor, this)
             : GetSongProperty(playlist, index, key.c_str(), buffer, room);
      break;
    case 1:
      visits ? VisitPlaylistProperties(playlist, visitor, this)
             : GetPlaylistProperty(playlist, key.c_str(), buffer, room);
      break;
    default:
      visits ? VisitLibraryProperties(visitor, this)
             : GetLibraryProperty(key.c_str(), buffer, room);
  }
  --depth_;
}

// What is shown stays as it is, whatever is called meanwhile.
std::int32_t Life::Look(const char* key, const char* text, const char* type, void* context) {
  Life& life = *static_cast<Life*>(context);
  const std::string before = std::string(key) + type + (text == nullptr ? "" : text);
  const std::size_t choice = life.choices_.Below(16);
  if (choice == 1 && life.depth_ < 3) life.Call();
  Require(before == std::string(key) + type + (text == nullptr ? "" : text),
          "What a visitor was shown has changed");
  return choice == 2 ? 0 : 1;
}

void Life::OpenOrCloseArtwork() {
  ArtworkHandle*& handle = artwork_[choices_.Below(artwork_.size())];
  CloseArtwork(handle);
  PlaylistRecord* playlist = AnyPlaylist();
  const std::int32_t index = choices_.Position(GetSongCount(playlist));
  const std::size_t way = choices_.Below(4);
  handle = nullptr;
  if (way == 1) handle = OpenArtwork(playlist, index);
  if (way == 2) handle = OpenArtworkAny(playlist, index);
  if (way == 3) handle = OpenArtworkFile(choices_.Text().c_str());
}

void Life::ReadArtwork() {
  ArtworkHandle* handle = artwork_[choices_.Below(artwork_.size())];
  const std::size_t room = choices_.Below(128);
  const auto bytes = std::make_unique<std::uint8_t[]>(room);
  ArtworkInfo info{};
  info.data = choices_.Below(4) == 0 ? nullptr : bytes.get();
  info.dataSize = static_cast<std::int32_t>(room);
  GetArtworkInfo(handle, choices_.Position(GetArtworkCount(handle)), &info);
}

// A match is a song, and the playlist the first that holds it.
void RequireFirst(PlaylistRecord* playlist, std::int32_t index) {
  SongInfo info{};
  Require(GetSongInfo(playlist, index, &info) > 0, "A match is no song");
  std::int32_t first = -1;
  const std::int32_t trackId = playlist->tracks[index]->trackId;
  Require(GetPlaylistByTrackId(trackId, &first) == playlist && first == index,
          "A match is told to stand elsewhere");
}

std::int32_t Life::Listen(PlaylistRecord* playlist, std::int32_t index, void* context) {
  Life& life = *static_cast<Life*>(context);
  if (playlist != nullptr) RequireFirst(playlist, index);
  const std::size_t choice = life.choices_.Below(16);
  if (choice == 1 && life.depth_ < 3) life.Call();
  return choice == 2 ? 0 : 1;
}

// A match is a song.
std::int32_t Life::Hear(std::int32_t index, void* context) {
  Life& life = *static_cast<Life*>(context);
  SongInfo info{};
  Require(GetSongInfo(OpenAllSongs(), index, &info) > 0, "A match is no song");
  const std::size_t choice = life.choices_.Below(16);
  if (choice == 1 && life.depth_ < 3) life.Call();
  return choice == 2 ? 0 : 1;
}

void Life::Search() {
  std::array<std::string, 3> texts = {choices_.Text(), choices_.Text(), choices_.Text()};
  const auto given = [this](std::string& text) {
    return choices_.Below(4) == 0 ? nullptr : text.data();
  };
  SongInfo terms{};
  terms.name = given(texts[0]);
  terms.artist = given(texts[1]);
  terms.album = given(texts[2]);
  const SongInfo* asked = choices_.Below(16) == 1 ? nullptr : &terms;
  const std::size_t way = choices_.Below(16);
  ++depth_;
  if (way < 8) {
    SearchSong(asked, way == 1 ? nullptr : Listen, this);
  } else {
    FindSongs(asked, way == 9 ? nullptr : Hear, this);
  }
  --depth_;
}

// Each starts a program: most inputs must do without, or there would be few of them.
void Life::Import() {
  static std::size_t imports = 0;
  if (imports > 16 + lives / 256) return;
  ++imports;
  const std::size_t runner = choices_.Below(3);
  const std::string path = choices_.Text();
  surroundings_.Import(runner, choices_.Below(8) == 1 ? nullptr : path.c_str());
}

void Life::Read() {
  const std::string text = choices_.Text();
  std::array<std::uint8_t, 8> id{};
  PersistentId2Buf(choices_.Below(8) == 1 ? nullptr : text.c_str(), id.data());
  const std::size_t room = choices_.Below(16);
  const auto decoded = std::make_unique<char[]>(room);
  RestoreXMLEscChar(decoded.get(), text.c_str(), static_cast<std::int32_t>(room));
  std::int32_t index = 0;
  (void)GetPlaylistByTrackId(choices_.Position(8), choices_.Below(2) == 0 ? nullptr : &index);
}

void Life::ReadDictionary() {
  constexpr const char* kKeys[] = {"Name", "Location", "Track ID", "Tracks", "Persistent ID"};
  const TBXMLElement* dict = AnyElement();
  const std::size_t known = choices_.Below(std::size(kKeys) + 1);
  const std::string key = known < std::size(kKeys) ? kKeys[known] : choices_.Text();
  char* text = nullptr;
  std::int32_t value = 0;
  ReadSongProp(dict, key.c_str(), &text, &value, static_cast<std::int32_t>(choices_.Below(8)));
  free(text);
  FilterPropMatch(dict, key.c_str(), choices_.Text().c_str());
}

// Those builders that may be called again, and the destroyers that builders follow.
void Life::Rebuild() {
  if (depth_ > 0) return;
  switch (choices_.Below(4)) {
    case 0:
      CreateRingtoneArray();
      return;
    case 1:
      DestroyRingtoneArray();
      return;
    case 2:
      DestroyArtworkArray();
      CreateArtworkArray();
      return;
    default:
      delete OpenXML();
  }
}

// A playlist of the caller's own.
void Life::FillPlaylist() {
  PlaylistRecord playlist{};
  CreatePlaylistTrack(choices_.Below(8) == 1 ? nullptr : &playlist, AnyElement());
  for (std::int32_t i = -1; i <= playlist.count; ++i) {
    SongInfo info{};
    GetSongInfo(&playlist, i, &info);
  }
  free(playlist.tracks);
}

void Life::LoadAnew() {
  if (depth_ > 0 || choices_.Below(4) != 1) return;
  CloseAll();
  AgentFinalizer();
  if (choices_.Below(2) == 1) AgentFinalizer();
  surroundings_.Load(choices_.Below(8));
}

void Life::CloseAll() {
  for (ArtworkHandle*& handle : artwork_) {
    CloseArtwork(handle);
    handle = nullptr;
  }
}

void Live(std::string_view input) {
  static const Surroundings surroundings;
  ++lives;
  Life(surroundings, input).Run();
}

const tavrel::fuzz::Target target("calls", Live);

}  // namespace
