#include "bench/search/Searching.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "agent/Exports.h"
#include "bench/support/Clocks.h"
#include "library/search/PlainSearch.h"
#include "library/tracks/TrackTable.h"

namespace tavrel::bench {
namespace {

// What a callback has heard, in few bytes.
struct Heard {
  std::uint64_t calls = 0;
  std::uint64_t hash = 0;
};

std::int32_t Listen(PlaylistRecord* playlist, std::int32_t index, void* context) {
  auto& heard = *static_cast<Heard*>(context);
  ++heard.calls;
  const auto place = reinterpret_cast<std::uintptr_t>(playlist) + static_cast<std::uint64_t>(index);
  heard.hash = (heard.hash ^ place) * 0x100000001B3u;
  return 1;
}

std::int32_t CountCalls(PlaylistRecord*, std::int32_t, void* context) {
  ++*static_cast<std::uint64_t*>(context);
  return 1;
}

std::int32_t KeepPosition(std::int32_t index, void* context) {
  auto& heard = *static_cast<Heard*>(context);
  ++heard.calls;
  heard.hash = (heard.hash ^ static_cast<std::uint32_t>(index)) * 0x100000001B3u;
  return 1;
}

std::int32_t CountMatches(std::int32_t, void* context) {
  ++*static_cast<std::uint64_t*>(context);
  return 1;
}

// What is found, against what a plain look at every track finds.
void CheckFinding(const SongInfo& terms, std::int32_t count) {
  Heard ours;
  Heard plain;
  const std::int32_t found = FindSongs(&terms, KeepPosition, &ours);
  const std::int32_t expected = FindPlainly(TrackDictionary(g_pGlobal->document),
                                            g_pGlobal->trackCount, terms, KeepPosition, &plain);
  if (found != count || expected != count || ours.calls != plain.calls || ours.hash != plain.hash) {
    throw std::runtime_error("the songs that are found are not those of a plain search");
  }
}

}  // namespace

SongInfo Terms(const std::string& name, const std::string& artist, const std::string& album) {
  SongInfo terms = {};  // which are only read
  terms.name = const_cast<char*>(name.c_str());
  terms.artist = const_cast<char*>(artist.c_str());
  terms.album = const_cast<char*>(album.c_str());
  return terms;
}

std::int32_t CheckedCount(const SongInfo& terms) {
  Heard ours;
  Heard plain;
  const std::int32_t count = SearchSong(&terms, Listen, &ours);
  const std::int32_t expected =
      SearchPlainly(g_pGlobal, TrackDictionary(g_pGlobal->document), terms, Listen, &plain);
  if (count != expected || ours.calls != plain.calls || ours.hash != plain.hash) {
    throw std::runtime_error("the search and the plain search differ");
  }
  CheckFinding(terms, count);
  return count;
}

double SecondsOfSearch(const SongInfo& terms) {
  std::uint64_t calls = 0;
  return ProcessorSecondsOf([&] { (void)SearchSong(&terms, CountCalls, &calls); });
}

double SecondsOfFinding(const SongInfo& terms) {
  constexpr int kCalls = 20;
  std::uint64_t calls = 0;
  const auto find = [&] { (void)FindSongs(&terms, CountMatches, &calls); };
  find();
  const double seconds = ProcessorSecondsOf([&] {
    for (int i = 0; i < kCalls; ++i) find();
  });
  return seconds / kCalls;
}

double SecondsOfPlainSearch(const SongInfo& terms) {
  std::uint64_t calls = 0;
  return ProcessorSecondsOf([&] {
    (void)SearchPlainly(g_pGlobal, TrackDictionary(g_pGlobal->document), terms, CountCalls, &calls);
  });
}

TrackTexts ReadTexts() {
  TrackTexts texts;
  PlaylistRecord* songs = OpenAllSongs();
  const std::int32_t count = GetSongCount(songs);
  for (std::int32_t i = 0; i < count; ++i) {
    SongInfo info = {};
    if (GetSongInfo(songs, i, &info) == 0) throw std::runtime_error("a song cannot be read");
    const auto room = [](std::int32_t size) {
      return std::string(static_cast<std::size_t>(std::max(size, 1)), '\0');
    };
    std::array<std::string, 3> track = {room(info.nameSize), room(info.artistSize),
                                        room(info.albumSize)};
    info.name = track[0].data();
    info.artist = track[1].data();
    info.album = track[2].data();
    (void)GetSongInfo(songs, i, &info);
    for (std::string& text : track) text.resize(text.find('\0'));
    texts.push_back(std::move(track));
  }
  return texts;
}

}  // namespace tavrel::bench
