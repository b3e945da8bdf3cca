// The whole library file, through the exported functions: it is loaded, everything is listed, every song is
// asked for twice, every property is read, songs are searched, artwork is opened, and all is given back.
#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "agent/Lifecycle.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/InputFile.h"
#include "library/search/PlainSearch.h"
#include "library/tracks/TrackTable.h"

using tavrel::fuzz::Require;

namespace {

constexpr std::int32_t kGroups = 3;
constexpr std::int32_t kMostArtwork = 2;  // of a playlist: each one opens a file

// A buffer of just the size that was reported: a sanitizer sees what is written behind it.
class Buffer {
 public:
  explicit Buffer(std::int32_t size) : size_(static_cast<std::size_t>(size)) {
    Require(size >= 0, "A size is negative");
    if (size_ > 0) bytes_ = std::make_unique_for_overwrite<char[]>(size_);
    if (size_ > 0) std::memset(bytes_.get(), '~', size_);
  }
  [[nodiscard]] char* data() const { return bytes_.get(); }
  // Empty without a text.
  [[nodiscard]] std::string Text() const {
    if (size_ == 0) return {};
    Require(std::memchr(bytes_.get(), '\0', size_) != nullptr, "A text has no end");
    return bytes_.get();
  }

 private:
  std::size_t size_;
  std::unique_ptr<char[]> bytes_;
};

struct Song {
  std::string name, location, artist, album, genre;
  std::int32_t total, totalTime, playCount, trackNumber, movie;

  bool operator==(const Song&) const = default;
};

Song ReadSong(PlaylistRecord* playlist, std::int32_t index) {
  SongInfo info{};
  const std::int32_t total = GetSongInfo(playlist, index, &info);
  const Buffer name(info.nameSize), location(info.locationSize), artist(info.artistSize),
      album(info.albumSize), genre(info.genreSize);
  Require(total == static_cast<std::int32_t>(sizeof(SongInfo)) + info.nameSize + info.locationSize +
                       info.artistSize + info.albumSize + info.genreSize,
          "The sum of the sizes is another");
  info.name = name.data();
  info.location = location.data();
  info.artist = artist.data();
  info.album = album.data();
  info.genre = genre.data();
  // A boolean sets the size of a text that there is none of: the buffer stays as it is.
  for (const Buffer* buffer : {&name, &location, &artist, &album, &genre}) {
    if (buffer->data() != nullptr) *buffer->data() = '\0';
  }
  Require(GetSongInfo(playlist, index, &info) == total, "A song has another size the second time");
  return {name.Text(), location.Text(), artist.Text(),  album.Text(),     genre.Text(),
          total,       info.totalTime,  info.playCount, info.trackNumber, info.movie};
}

void ReadArtwork(ArtworkHandle* handle) {
  const std::int32_t count = GetArtworkCount(handle);
  Require(count >= 0 && (handle != nullptr || count == 0), "A number of images cannot be");
  for (std::int32_t i = -1; i <= count; ++i) {
    ArtworkInfo info{};
    const std::int32_t size = GetArtworkInfo(handle, i, &info);
    if (size == 0 || info.dataSize <= 0) continue;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(info.dataSize));
    info.data = bytes.data();
    Require(GetArtworkInfo(handle, i, &info) == size, "An image has another size the second time");
  }
  CloseArtwork(handle);
}

void ReadPlaylist(PlaylistRecord* playlist) {
  const std::int32_t count = GetSongCount(playlist);
  Require(count >= 0, "A number of songs is negative");
  for (std::int32_t i = 0; i < count; ++i) {
    Require(ReadSong(playlist, i) == ReadSong(playlist, i), "A song is another the second time");
    if (i < kMostArtwork) ReadArtwork(OpenArtwork(playlist, i));
    if (i < kMostArtwork) ReadArtwork(OpenArtworkAny(playlist, i));
  }
  SongInfo info{};
  const bool answersNothing =
      GetSongInfo(playlist, count, &info) == 0 && GetSongInfo(playlist, -1, &info) == 0;
  Require(answersNothing, "A bad position has a song");
}

void ReadPlaylists() {
  for (std::int32_t group = -1; group <= kGroups; ++group) {
    const std::int32_t count = GetPlaylistCount(group);
    for (std::int32_t i = -1; i <= count; ++i) {
      PlaylistRecord* playlist = OpenPlaylist(group, i);
      Require((playlist != nullptr) == (i >= 0 && i < count),
              "A playlist is missing, or one too many");
      if (playlist == nullptr) continue;
      const Buffer name(GetPlaylistName(group, i, nullptr, 0));
      const std::int32_t size = GetPlaylistName(group, i, nullptr, 0);
      GetPlaylistName(group, i, name.data(), size);
      (void)name.Text();
      (void)GetPlaylistKind(playlist);
      ReadPlaylist(playlist);
      Require(ClosePlaylist(playlist) == 1, "A playlist does not close");
    }
  }
  if (PlaylistRecord* all = OpenAllSongs()) ReadPlaylist(all);
}

std::int32_t Keep(const char* key, const char* text, const char* type, void* context) {
  Require(type != nullptr, "A value has no type");
  auto& pairs = *static_cast<std::vector<std::pair<std::string, std::string>>*>(context);
  pairs.emplace_back(key, text == nullptr ? "" : std::string("=") + text);
  return 1;
}

// A visit and the questions for the first of its keys tell the same.
template <class Visit, class Get>
void ReadProperties(Visit visit, Get get) {
  constexpr std::size_t kMostAsked = 50;
  std::vector<std::pair<std::string, std::string>> pairs;
  const std::int32_t count = visit(Keep, &pairs);
  Require(count == static_cast<std::int32_t>(pairs.size()), "A visit counts something else");
  for (std::size_t i = 0; i < std::min(pairs.size(), kMostAsked); ++i) {
    const std::string& key = pairs[i].first;
    const auto first = std::find_if(pairs.begin(), pairs.end(),
                                    [&key](const auto& pair) { return pair.first == key; });
    const std::int32_t size = get(key.c_str(), nullptr, 0);
    const Buffer buffer(size);
    Require(get(key.c_str(), buffer.data(), size) == size, "A property has another size");
    const std::string text = size == 0 ? "" : "=" + buffer.Text();
    Require(text == first->second && text.size() == static_cast<std::size_t>(size),
            "A property is told to be something else");
  }
}

void ReadAllProperties() {
  ReadProperties(VisitLibraryProperties, GetLibraryProperty);
  const PlaylistRecord* all = OpenAllSongs();
  for (std::int32_t i = -1; i <= GetSongCount(all); ++i) {
    ReadProperties([=](PropertyVisitor visitor,
                       void* context) { return VisitSongProperties(all, i, visitor, context); },
                   [=](const char* key, char* buffer, std::int32_t size) {
                     return GetSongProperty(all, i, key, buffer, size);
                   });
  }
  for (std::int32_t group = 0; group < kGroups; ++group) {
    for (std::int32_t i = 0; i < GetPlaylistCount(group); ++i) {
      const PlaylistRecord* playlist = OpenPlaylist(group, i);
      ReadProperties(
          [=](PropertyVisitor visitor, void* context) {
            return VisitPlaylistProperties(playlist, visitor, context);
          },
          [=](const char* key, char* buffer, std::int32_t size) {
            return GetPlaylistProperty(playlist, key, buffer, size);
          });
    }
  }
}

struct Call {
  PlaylistRecord* playlist;
  std::int32_t index;

  bool operator==(const Call&) const = default;
};

std::int32_t Listen(PlaylistRecord* playlist, std::int32_t index, void* context) {
  static_cast<std::vector<Call>*>(context)->push_back({playlist, index});
  return 1;
}

std::int32_t KeepPosition(std::int32_t index, void* context) {
  static_cast<std::vector<std::int32_t>*>(context)->push_back(index);
  return 1;
}

// The search and its plain form tell the same, and so do those that tell of matches only.
void Search(std::string name, std::string artist, std::string album) {
  SongInfo terms{};
  terms.name = name.data();
  terms.artist = artist.data();
  terms.album = album.data();
  std::vector<Call> calls;
  std::vector<Call> plainCalls;
  const std::int32_t count = SearchSong(&terms, Listen, &calls);
  const std::int32_t plainCount = tavrel::SearchPlainly(
      g_pGlobal, tavrel::TrackDictionary(g_pGlobal->document), terms, Listen, &plainCalls);
  Require(count == plainCount && calls == plainCalls, "A search tells something else");
  std::vector<std::int32_t> songs;
  std::vector<std::int32_t> plainSongs;
  const std::int32_t found = FindSongs(&terms, KeepPosition, &songs);
  (void)tavrel::FindPlainly(tavrel::TrackDictionary(g_pGlobal->document), g_pGlobal->trackCount,
                            terms, KeepPosition, &plainSongs);
  Require(found == count && songs == plainSongs, "Other songs are found");
}

void SearchAll() {
  Search("e", "\u00DF", "");
  const std::int32_t count = GetSongCount(OpenAllSongs());
  for (const std::int32_t index : {0, count - 1}) {
    if (index < 0 || index >= count) continue;
    const Song song = ReadSong(OpenAllSongs(), index);
    Search(song.album, song.name.substr(0, 3), song.artist);
    Search(song.name, "", song.genre);
  }
}

void LiveOnFile(std::string_view input) {
  static const tavrel::fuzz::InputHome home;
  home.WriteLibrary(input);
  const std::int32_t result = AgentInitializer();
  Require((result == 0) == (OpenAllSongs() != nullptr), "A load tells something else");
  ReadPlaylists();
  ReadAllProperties();
  SearchAll();
  AgentFinalizer();
}

const tavrel::fuzz::Target libraryTarget("library", LiveOnFile);

}  // namespace
