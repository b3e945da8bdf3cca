// song_information: measures the first information of every song beside ten walks of its dictionary.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "bench/report/Machine.h"
#include "bench/report/Program.h"
#include "bench/report/Report.h"
#include "bench/support/ChildRun.h"
#include "bench/support/LoadedLibrary.h"
#include "library/playlists/PlaylistTable.h"
#include "library/tracks/PlainTrackProperties.h"
#include "system/Memory.h"

namespace {

using namespace tavrel::bench;

constexpr char footer[] =
    "Each round loads FILE twice. One time GetSongInfo() is called for every track; the other "
    "time\n"
    "each track's properties are first read by ten walks of its dictionary, with memory of its own "
    "for\n"
    "every text. Both must give the same. Times are those of the processor.\n"
    "\n"
    "Example:\n"
    "  generate_library --tracks 100000 -o library.xml && song_information library.xml";

struct Options {
  CommonOptions common{15, {}};
  std::string file;
};

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
  const double start = ProcessorSeconds();
  for (std::int32_t i = 0; i < songs->count; ++i) {
    prepare(*songs->tracks[i]);
    SongInfo info = {};
    if (GetSongInfo(songs, i, &info) == 0) throw std::runtime_error("a song cannot be read");
  }
  return ProcessorSeconds() - start;
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
  const Run run = RunOn(songs, tavrel::LoadTrackPropertiesPlainly);
  for (std::int32_t i = 0; i < songs->count; ++i) ReleaseTexts(songs->tracks[i]->info);
  AgentFinalizer();
  return run;
}

void Measure(const Options& options) {
  Report report("song_information");
  AddMachineFacts(report);
  Series ours;
  Series second;
  Series tenWalks;
  for (std::uint32_t round = 0; round < options.common.rounds; ++round) {
    // Neither always goes first.
    const bool isFirst = round % 2 == 0;
    const Run early = isFirst ? RunOurs(options.file) : RunTenWalks(options.file);
    const Run late = isFirst ? RunTenWalks(options.file) : RunOurs(options.file);
    if (early.trackCount == 0) throw std::runtime_error(options.file + " holds no tracks");
    if (early.trackCount != late.trackCount || early.hash != late.hash) {
      throw std::runtime_error("the tracks and those that ten walks read differ");
    }
    const auto each = [&early](double seconds) { return seconds / early.trackCount; };
    if (round == 0) {
      report.Fact("tracks", std::to_string(early.trackCount));
      report.Fact("hash of all properties", fmt::format("{:016x}", early.hash));
    }
    ours.Add(each((isFirst ? early : late).first));
    second.Add(each((isFirst ? early : late).second));
    tenWalks.Add(each((isFirst ? late : early).first));
  }
  report.Section("song information, a track");
  report.Seconds("first request", ours);
  report.Seconds("ten walks, then the request", tenWalks);
  report.Seconds("second request", second);
  report.Add({14, "first song information of all tracks: ten walks / ours", tenWalks.Over(ours),
              Bound::kAtLeast, 1.5, 3});
  report.Finish(options.common.jsonFile);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("Measures the first information of every song.", "song_information");
  app.footer(footer);
  AddCommonOptions(app, options.common);
  app.add_option("FILE", options.file, "Library file")->required()->check(CLI::ExistingFile);
  return RunProgram(app, argc, argv, [&] { Measure(options); });
}
