#include "tests/support/WholeUse.h"

#include <dlfcn.h>

#include <algorithm>
#include <vector>

namespace tavrel::test {
namespace {

constexpr std::int32_t kSongsWithArtwork = 120;
constexpr std::int32_t kKindOfRingtones = 55;

template <class Function>
Function* Of(const FindFunction& find, const char* name) {
  return reinterpret_cast<Function*>(find(name));
}
#define TAVREL_FUNCTION(find, name) Of<decltype(name)>(find, #name)

void Append(std::string& text, std::int64_t number) {
  text += std::to_string(number);
  text += ' ';
}

void AppendSong(const FindFunction& find, std::string& text, PlaylistRecord* playlist,
                std::int32_t index) {
  auto* getSongInfo = TAVREL_FUNCTION(find, GetSongInfo);
  SongInfo info = {};
  Append(text, getSongInfo(playlist, index, &info));
  std::vector<char> room(static_cast<std::size_t>(
      info.nameSize + info.locationSize + info.artistSize + info.albumSize + info.genreSize + 5));
  char* at = room.data();
  for (const auto& [buffer, size] : {std::pair{&info.name, info.nameSize},
                                     {&info.location, info.locationSize},
                                     {&info.artist, info.artistSize},
                                     {&info.album, info.albumSize},
                                     {&info.genre, info.genreSize}}) {
    *buffer = at;
    at += size + 1;
  }
  getSongInfo(playlist, index, &info);
  for (const char* part : {info.name, info.location, info.artist, info.album, info.genre}) {
    text.append(part) += '|';
  }
  for (const std::int32_t number : {info.totalTime, info.playCount, info.trackNumber, info.movie}) {
    Append(text, number);
  }
  text += '\n';
}

std::int32_t AppendPair(const char* key, const char* value, const char* type, void* context) {
  auto& text = *static_cast<std::string*>(context);
  text.append(key).append("=").append(value == nullptr ? "-" : value).append(type) += '|';
  return 1;
}

void AppendProperties(const FindFunction& find, std::string& text, PlaylistRecord* songs) {
  const std::int32_t count = TAVREL_FUNCTION(find, GetSongCount)(songs);
  for (std::int32_t i = 0; i < count; ++i) {
    Append(text, TAVREL_FUNCTION(find, VisitSongProperties)(songs, i, AppendPair, &text));
    Append(text, TAVREL_FUNCTION(find, GetSongProperty)(songs, i, "Genre", nullptr, 0));
  }
  PlaylistRecord* playlist = TAVREL_FUNCTION(find, OpenPlaylist)(0, 0);
  Append(text, TAVREL_FUNCTION(find, VisitPlaylistProperties)(playlist, AppendPair, &text));
  Append(text, TAVREL_FUNCTION(find, GetPlaylistProperty)(playlist, "Name", nullptr, 0));
  Append(text, TAVREL_FUNCTION(find, VisitLibraryProperties)(AppendPair, &text));
  Append(text, TAVREL_FUNCTION(find, GetLibraryProperty)("Date", nullptr, 0));
}

void AppendLists(const FindFunction& find, std::string& text) {
  auto* openPlaylist = TAVREL_FUNCTION(find, OpenPlaylist);
  auto* getPlaylistName = TAVREL_FUNCTION(find, GetPlaylistName);
  for (std::int32_t group = 0; group < 3; ++group) {
    const std::int32_t count = TAVREL_FUNCTION(find, GetPlaylistCount)(group);
    for (std::int32_t i = 0; i < count; ++i) {
      PlaylistRecord* playlist = openPlaylist(group, i);
      const std::int32_t kind = TAVREL_FUNCTION(find, GetPlaylistKind)(playlist);
      const std::int32_t songs = TAVREL_FUNCTION(find, GetSongCount)(playlist);
      std::vector<char> name(static_cast<std::size_t>(getPlaylistName(group, i, nullptr, 0)) + 1);
      getPlaylistName(group, i, name.data(), static_cast<std::int32_t>(name.size()));
      Append(text, kind);
      text.append(name.data()) += ' ';
      if (kind != kKindOfRingtones) Append(text, songs);
      if (songs > 0) AppendSong(find, text, playlist, kind == kKindOfRingtones ? 0 : songs - 1);
    }
  }
}

void AppendSearch(const FindFunction& find, std::string& text, const char* term) {
  SongInfo terms = {};
  terms.name = terms.artist = terms.album = const_cast<char*>(term);
  const auto listen = [](PlaylistRecord* playlist, std::int32_t index, void* context) {
    if (playlist != nullptr) Append(*static_cast<std::string*>(context), index);
    return std::int32_t{1};
  };
  Append(text, TAVREL_FUNCTION(find, SearchSong)(&terms, listen, &text));
  const auto hear = [](std::int32_t index, void* context) {
    Append(*static_cast<std::string*>(context), index);
    return std::int32_t{1};
  };
  Append(text, TAVREL_FUNCTION(find, FindSongs)(&terms, hear, &text));
  text += '\n';
}

void AppendArtwork(const FindFunction& find, std::string& text, ArtworkHandle* handle) {
  text += ReadImages(find, handle);
  TAVREL_FUNCTION(find, CloseArtwork)(handle);
}

}  // namespace

FindFunction FunctionsOf(const LoadedLibrary& library) {
  return [&library](const char* name) { return library.Get<void*>(name); };
}

FindFunction FunctionsOf(void* handle) {
  return [handle](const char* name) { return dlsym(handle, name); };
}

std::string UseEverything(const FindFunction& find) {
  std::string text;
  AppendLists(find, text);
  PlaylistRecord* all = TAVREL_FUNCTION(find, OpenAllSongs)();
  const std::int32_t count = TAVREL_FUNCTION(find, GetSongCount)(all);
  for (const char* term : {"a", "IN", "\u00e9", "no such song"}) AppendSearch(find, text, term);
  for (std::int32_t i = 0; i < count; ++i) {
    AppendSong(find, text, all, i);
    AppendSong(find, text, all, i);
  }
  AppendProperties(find, text, all);
  for (std::int32_t i = 0; i < std::min(count, kSongsWithArtwork); ++i) {
    AppendArtwork(find, text, TAVREL_FUNCTION(find, OpenArtwork)(all, i));
    AppendArtwork(find, text, TAVREL_FUNCTION(find, OpenArtworkAny)(all, i));
  }
  return text;
}

ArtworkHandle* OpenFirstArtwork(const FindFunction& find) {
  PlaylistRecord* all = TAVREL_FUNCTION(find, OpenAllSongs)();
  const std::int32_t count = TAVREL_FUNCTION(find, GetSongCount)(all);
  for (std::int32_t i = 0; i < count; ++i) {
    ArtworkHandle* handle = TAVREL_FUNCTION(find, OpenArtwork)(all, i);
    if (handle != nullptr) return handle;
  }
  return nullptr;
}

std::string ReadImages(const FindFunction& find, ArtworkHandle* handle) {
  std::string text;
  auto* getArtworkInfo = TAVREL_FUNCTION(find, GetArtworkInfo);
  const std::int32_t count = TAVREL_FUNCTION(find, GetArtworkCount)(handle);
  for (std::int32_t i = 0; i < count; ++i) {
    ArtworkInfo info = {};
    getArtworkInfo(handle, i, &info);
    std::string bytes(static_cast<std::size_t>(std::max(info.dataSize, 0)), '\0');
    info.data = reinterpret_cast<std::uint8_t*>(bytes.data());
    Append(text, getArtworkInfo(handle, i, &info));
    Append(text, info.width);
    text += bytes;
  }
  return text;
}

std::int32_t Import(const FindFunction& find) {
  return TAVREL_FUNCTION(find, AppendRingtone)("/a/ringtone/of/the/host's.m4r");
}

}  // namespace tavrel::test
