// search: measures the song search beside other ways to search the same texts.
#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/report/Benchmark.h"
#include "bench/report/Turns.h"
#include "bench/search/SearchPeers.h"
#include "bench/search/Searching.h"
#include "bench/support/ChildRun.h"
#include "bench/support/Clocks.h"
#include "bench/support/LoadedLibrary.h"

namespace {

using namespace tavrel::bench;

constexpr char kFooter[] =
    "The largest FILE is searched for the terms; a search in which nearly all tracks match is\n"
    "timed on each. Ours and the peers take turns, and each ratio is one of a round. Times\n"
    "are those of the processor, so that other work on the machine counts for nobody. Do not\n"
    "compare times of different calls: machines have fast and slow phases.\n"
    "\n"
    "Example:\n"
    "  for n in 10000 30000 100000; do generate_library --tracks $n -o $n.xml; done\n"
    "  search 10000.xml 30000.xml 100000.xml";

constexpr char kAbsentTerm[] = "zqxjkv";

struct Options {
  std::vector<std::string> terms = {"love", kAbsentTerm, "corazón", "愛"};
  std::vector<std::string> files;
};

using Peers = std::vector<std::unique_ptr<SearchPeer>>;

// What one more search costs: the mean of a few in a row.
double SecondsOfRepeated(const SongInfo& terms) {
  constexpr int kSearches = 5;
  (void)SecondsOfSearch(terms);
  double sum = 0;
  for (int i = 0; i < kSearches; ++i) sum += SecondsOfSearch(terms);
  return sum / kSearches;
}

void AddPeer(Report& report, const Step& peer, const Series& ours) {
  report.Seconds(peer.name, peer.seconds);
  report.Figure("  time / ours", "", peer.seconds.Over(ours));
}

// How many times as long the first peer takes as SearchSong() and as FindSongs().
struct Ratios {
  Series searching;
  Series finding;
};

// One term in all texts.
Ratios MeasureTerm(const std::string& term, const Peers& peers, std::uint32_t rounds,
                   Report& report) {
  const SongInfo terms = Terms(term);
  const std::int32_t count = CheckedCount(terms);
  std::vector<std::int64_t> found(peers.size());
  std::vector<Step> steps = {
      {"SearchSong, repeated", [&] { return SecondsOfRepeated(terms); }},
      {"FindSongs, repeated", [&] { return SecondsOfFinding(terms); }},
      {"plain search", [&] { return SecondsOfPlainSearch(terms); }},
  };
  for (std::size_t i = 0; i < peers.size(); ++i) {
    steps.push_back({std::string(peers[i]->Name()), [&, i] {
                       return ProcessorSecondsOf([&] { found[i] = peers[i]->Count(term); });
                     }});
  }
  RunInTurns(steps, rounds);
  constexpr std::size_t kOurs = 3;  // steps before the peers'
  const Series& ours = steps[0].seconds;
  report.Section(fmt::format("\"{}\": {} tracks", term, count));
  report.Seconds(steps[0].name, ours);
  AddPeer(report, steps[1], ours);
  AddPeer(report, steps[2], ours);
  for (std::size_t i = 0; i < peers.size(); ++i) {
    AddPeer(report, steps[kOurs + i], ours);
    if (found[i] >= 0 && found[i] != count)
      report.Figure("  finds", "tracks", Series(static_cast<double>(found[i])));
  }
  const Series& peer = steps[kOurs].seconds;
  return {peer.Over(ours), peer.Over(steps[1].seconds)};
}

// Of all pairs of letters, the one that comes nearest to matching half of the tracks.
std::string TermOfHalf(std::int32_t trackCount) {
  const auto ignore = [](PlaylistRecord*, std::int32_t, void*) { return std::int32_t{1}; };
  std::string best;
  std::int32_t leastDistance = trackCount;
  for (char first = 'a'; first <= 'z'; ++first) {
    for (char second = 'a'; second <= 'z'; ++second) {
      const std::string term = {first, second};
      const SongInfo terms = Terms(term);
      const std::int32_t distance = std::abs(SearchSong(&terms, ignore, nullptr) - trackCount / 2);
      if (distance >= leastDistance) continue;
      leastDistance = distance;
      best = term;
    }
  }
  return best;
}

// The first search after a load. Result: what part of the peer's time it takes.
Series MeasureFirst(const std::string& file, const std::string& term, SearchPeer& peer,
                    std::uint32_t rounds, Report& report) {
  const SongInfo terms = Terms(term);
  const auto searchAfterLoad = [&] {
    const LoadedLibrary library(file);
    WarmMemory(std::uint64_t{1} << 28);
    const double seconds = SecondsOfSearch(terms);
    AgentFinalizer();
    return seconds;
  };
  std::vector<Step> steps = {{"SearchSong", searchAfterLoad},
                             {std::string(peer.Name()),
                              [&] { return ProcessorSecondsOf([&] { (void)peer.Count(term); }); }}};
  RunInTurns(steps, rounds);
  report.Section(fmt::format("\"{}\", the first search after a load", term));
  report.Seconds(steps[0].name, steps[0].seconds);
  AddPeer(report, steps[1], steps[0].seconds);
  return steps[0].seconds.Over(steps[1].seconds);
}

// Nearly all tracks match: a common letter for each text. Result: how much longer the largest file
// takes than the smallest.
Series MeasureAllMatching(const std::vector<std::string>& files, std::uint32_t rounds,
                          Report& report) {
  const std::string letters[] = {"e", "a", "o"};
  const SongInfo terms = Terms(letters[0], letters[1], letters[2]);
  std::vector<LoadedLibrary> libraries(files.begin(), files.end());
  std::vector<Step> steps;
  for (const LoadedLibrary& library : libraries) {
    library.Select();
    steps.push_back(
        {fmt::format("{} of {} tracks", CheckedCount(terms), library.trackCount()), [&] {
           library.Select();
           return SecondsOfRepeated(terms);
         }});
  }
  RunInTurns(steps, rounds);
  report.Section("nearly all tracks match");
  for (std::size_t i = 0; i < steps.size(); ++i) {
    report.Seconds(steps[i].name, steps[i].seconds);
    report.Figure("  a track", "ns", steps[i].seconds.Times(1e9 / libraries[i].trackCount()));
  }
  return steps.back().seconds.Over(steps.front().seconds);
}

// The first of them is the one that targets speak of, the second that of the first search.
Peers MakePeers(const TrackTexts& texts, const std::string& file) {
  Peers peers;
  for (auto make : {MakeIcuFolding, MakeIcuStringSearch, MakeUtf8procMap}) {
    if (auto peer = make(texts)) peers.push_back(std::move(peer));
  }
  for (const char* program : {"grep", "rg"}) {
    if (auto peer = MakeGrep(program, file)) peers.push_back(std::move(peer));
  }
  return peers;
}

void AddTarget(Report& report, int number, std::string name, Series ratio, double pass,
               double moonshot) {
  const Bound bound = pass < moonshot ? Bound::kAtLeast : Bound::kAtMost;
  report.Add({number, std::move(name), std::move(ratio), bound, pass, moonshot});
}

void Measure(const Options& options, std::uint32_t rounds, Report& report) {
  std::vector<std::string> files = options.files;
  std::sort(files.begin(), files.end(), [](const std::string& a, const std::string& b) {
    return std::filesystem::file_size(a) < std::filesystem::file_size(b);
  });
  const LoadedLibrary library(files.back());
  const TrackTexts texts = ReadTexts();
  const Peers peers = MakePeers(texts, files.back());
  const std::string folding(peers[0]->Name());
  report.Fact("searched tracks", std::to_string(library.trackCount()));

  for (const std::string& term : options.terms) {
    const Ratios ratios = MeasureTerm(term, peers, rounds, report);
    if (term == options.terms.front()) continue;  // the frequent one has no target
    AddTarget(report, 10, fmt::format("search \"{}\": {} / ours", term, folding), ratios.searching,
              100, 250);
    if (term != kAbsentTerm) continue;
    AddTarget(report, 20, fmt::format("find \"{}\": {} / ours", term, folding), ratios.finding, 600,
              1000);
  }
  const std::string common = TermOfHalf(library.trackCount());
  Series half = MeasureTerm(common, peers, rounds, report).searching;
  AddTarget(report, 11, fmt::format("search, half match: {} / ours", folding), half, 12, 40);
  AgentFinalizer();
  Series first = MeasureFirst(files.back(), options.terms.front(), *peers[1], rounds, report);
  AddTarget(report, 12, fmt::format("first search: ours / {}", peers[1]->Name()), first, 0.6, 0.3);
  if (files.size() > 1) {
    Series growth = MeasureAllMatching(files, rounds, report);
    AddTarget(report, 13, "search, all match: largest file / smallest", growth, 13, 12);
  }
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  Benchmark benchmark("search", "Measures the song search.", 9);
  benchmark.Explain(kFooter);
  benchmark.Take(options.files);
  benchmark.arguments().Texts("--term", options.terms,
                              "Terms to search for, the first a frequent one");
  return benchmark.Run(argc, argv,
                       [&](Report& report) { Measure(options, benchmark.rounds(), report); });
}
