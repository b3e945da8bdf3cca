// song_information: measures the first information of every song beside ten walks of its dictionary.
#include <fmt/format.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/report/Benchmark.h"
#include "bench/report/Turns.h"
#include "bench/support/ChildRun.h"
#include "bench/support/Clocks.h"
#include "bench/support/LoadedLibrary.h"
#include "library/playlists/PlaylistTable.h"
#include "system/Memory.h"
#include "tests/reference/LiteralTrackProperties.h"

namespace {

using namespace tavrel::bench;

constexpr char kFooter[] =
    "Each round loads FILE twice. One time GetSongInfo() is called for every track; the other\n"
    "time each track's properties are first read by ten walks of its dictionary, with memory\n"
    "of its own for every text. Both must give the same. Times are those of the processor.\n"
    "\n"
    "Example:\n"
    "  generate_library --tracks 100000 -o library.xml && song_information library.xml";

// Of one load, in seconds for all tracks.
struct Run {
  double first;
  double second;
  std::int32_t trackCount;
  std::uint64_t hash;  // of everything that was read
};

class Hash {
 public:
  void Add(std::uint64_t value) { value_ = (value_ ^ value) * 0x9E3779B97F4A7C15u >> 1; }
  void Add(const char* text) {
    if (text == nullptr) return Add(std::uint64_t{1} << 32);
    for (; *text != '\0'; ++text) Add(static_cast<unsigned char>(*text));
    Add(std::uint64_t{1} << 33);
  }
  void Add(const TrackRecord& track) {
    const SongInfo& info = track.info;
    for (const char* text : {info.name, info.location, info.artist, info.album, info.genre}) {
      Add(text);
    }
    for (const std::int32_t number :
         {info.nameSize, info.locationSize, info.artistSize, info.albumSize, info.genreSize,
          info.totalTime, info.playCount, info.trackNumber, info.movie}) {
      Add(static_cast<std::uint32_t>(number));
    }
    for (const std::uint8_t byte : track.persistentId) Add(byte);
  }
  [[nodiscard]] std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0;
};

// Asks for every song of the playlist. Result: the processor time in seconds.
template <class Prepare>
double SecondsOfAll(PlaylistRecord* songs, Prepare&& prepare) {
  return ProcessorSecondsOf([&] {
    for (std::int32_t i = 0; i < songs->count; ++i) {
      prepare(*songs->tracks[i]);
      SongInfo info = {};
      if (GetSongInfo(songs, i, &info) == 0) throw std::runtime_error("a song cannot be read");
    }
  });
}

void ReleaseTexts(SongInfo& info) {
  for (char** text : {&info.name, &info.location, &info.artist, &info.album, &info.genre}) {
    tavrel::system::Release(*text);
    *text = nullptr;
  }
}

template <class Prepare>
Run RunOn(PlaylistRecord* songs, Prepare&& prepare) {
  WarmMemory(std::uint64_t{1} << 28);
  Run run{};
  run.first = SecondsOfAll(songs, prepare);
  run.second = SecondsOfAll(songs, [](TrackRecord&) {});
  run.trackCount = songs->count;
  Hash hash;
  for (std::int32_t i = 0; i < songs->count; ++i) hash.Add(*songs->tracks[i]);
  run.hash = hash.value();
  return run;
}

Run RunOurs(const std::string& file) {
  const LoadedLibrary library(file);
  const Run run = RunOn(OpenAllSongs(), [](TrackRecord&) {});
  AgentFinalizer();
  return run;
}

Run RunTenWalks(const std::string& file) {
  const LoadedLibrary library(file);
  PlaylistRecord* songs = OpenAllSongs();
  const Run run = RunOn(songs, tavrel::reference::LoadTrackPropertiesLiterally);
  for (std::int32_t i = 0; i < songs->count; ++i) ReleaseTexts(songs->tracks[i]->info);
  AgentFinalizer();
  return run;
}

void Measure(const std::string& file, std::uint32_t rounds, Report& report) {
  const Run expected = RunTenWalks(file);
  if (expected.trackCount == 0) throw std::runtime_error(file + " holds no tracks");
  report.Fact("tracks", std::to_string(expected.trackCount));
  report.Fact("hash of all properties", fmt::format("{:016x}", expected.hash));
  const auto checked = [&expected](const Run& run) {
    if (run.trackCount != expected.trackCount || run.hash != expected.hash) {
      throw std::runtime_error("the tracks and those that ten walks read differ");
    }
    return run;
  };
  Series second;
  std::vector<Step> steps = {
      {"first request",
       [&] {
         const Run run = checked(RunOurs(file));
         second.Add(run.second);
         return run.first;
       }},
      {"ten walks, then the request", [&] { return checked(RunTenWalks(file)).first; }}};
  RunInTurns(steps, rounds);
  const double share = 1.0 / expected.trackCount;
  report.Section("song information, a track");
  for (const Step& step : steps) report.Seconds(step.name, step.seconds.Times(share));
  report.Seconds("second request", second.Times(share));
  report.Add({14, "first song information of all tracks: ten walks / ours",
              steps[1].seconds.Over(steps[0].seconds), Bound::kAtLeast, 1.5, 3});
}

}  // namespace

int main(int argc, char** argv) {
  std::string file;
  Benchmark benchmark("song_information", "Measures the first information of every song.", 15);
  benchmark.Explain(kFooter);
  benchmark.Take(file);
  return benchmark.Run(argc, argv,
                       [&](Report& report) { Measure(file, benchmark.rounds(), report); });
}
