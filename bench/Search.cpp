// search: measures the song search beside other ways to search the same texts.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bench/ChildRun.h"
#include "bench/SearchPeers.h"
#include "bench/SearchedLibrary.h"

namespace {

using namespace tavrel::bench;

constexpr char footer[] =
    "The largest FILE is searched for the terms; a search in which nearly all tracks match is "
    "timed\n"
    "on each. Ours and the peers take turns, and each ratio is one of a round. Times are those of "
    "the\n"
    "processor, so that other work on the machine counts for nobody. Do not compare times of "
    "different\n"
    "calls: machines have fast and slow phases.\n"
    "\n"
    "Example:\n"
    "  for n in 10000 30000 100000; do generate_library --tracks $n -o $n.xml; done\n"
    "  search 10000.xml 30000.xml 100000.xml";

struct Options {
  std::uint32_t rounds = 9;
  std::vector<std::string> terms = {"love", "zqxjkv", "corazón", "愛"};
  std::vector<std::string> files;
};

using Peers = std::vector<std::unique_ptr<SearchPeer>>;

class Series {
 public:
  void Add(double value) { values_.push_back(value); }
  [[nodiscard]] double operator[](std::size_t round) const { return values_[round]; }
  [[nodiscard]] std::size_t size() const { return values_.size(); }

  [[nodiscard]] double Least() const { return Sorted().front(); }
  [[nodiscard]] double Median() const { return Sorted()[values_.size() / 2]; }
  [[nodiscard]] double Most() const { return Sorted().back(); }

  // Round by round.
  [[nodiscard]] Series Over(const Series& other) const {
    Series ratios;
    for (std::size_t i = 0; i < size(); ++i) ratios.Add(values_[i] / other[i]);
    return ratios;
  }

 private:
  [[nodiscard]] std::vector<double> Sorted() const {
    std::vector<double> sorted = values_;
    std::sort(sorted.begin(), sorted.end());
    return sorted;
  }

  std::vector<double> values_;
};

template <typename Work>
double SecondsOf(Work&& work) {
  const double start = ProcessorSeconds();
  work();
  return ProcessorSeconds() - start;
}

// What one more search costs: the mean of a few in a row.
double SecondsOfRepeated(const SongInfo& terms) {
  constexpr int kSearches = 5;
  (void)SecondsOfSearch(terms);
  double sum = 0;
  for (int i = 0; i < kSearches; ++i) sum += SecondsOfSearch(terms);
  return sum / kSearches;
}

void PrintOurs(std::string_view label, const Series& seconds) {
  fmt::print("  {:<26}{:>9.3f} ms  ({:.3f} to {:.3f})\n", label, seconds.Median() * 1e3,
             seconds.Least() * 1e3, seconds.Most() * 1e3);
}

void PrintPeer(std::string_view label, const Series& seconds, const Series& ours) {
  const Series ratios = seconds.Over(ours);
  fmt::print("  {:<26}{:>9.3f} ms  {:>8.1f} times as long ({:.1f} to {:.1f})\n", label,
             seconds.Median() * 1e3, ratios.Median(), ratios.Least(), ratios.Most());
}

// One term in all texts; how many times as long the first peer takes.
double MeasureTerm(const std::string& term, const Peers& peers, const Options& options) {
  const SongInfo terms = Terms(term);
  const std::int32_t count = CheckedCount(terms);
  fmt::print("\n\"{}\": {} tracks\n", term, count);
  Series ours;
  Series plain;
  std::vector<Series> theirs(peers.size());
  for (std::uint32_t round = 0; round < options.rounds; ++round) {
    ours.Add(SecondsOfRepeated(terms));
    plain.Add(SecondsOfPlainSearch(terms));
    for (std::size_t i = 0; i < peers.size(); ++i) {
      std::int64_t found = -1;
      theirs[i].Add(SecondsOf([&] { found = peers[i]->Count(term); }));
      if (round > 0 || found < 0 || found == count) continue;
      fmt::print("  ({} finds {} tracks)\n", peers[i]->Name(), found);
    }
  }
  PrintOurs("SearchSong, repeated", ours);
  PrintPeer("plain search", plain, ours);
  for (std::size_t i = 0; i < peers.size(); ++i) PrintPeer(peers[i]->Name(), theirs[i], ours);
  return theirs.front().Over(ours).Median();
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

// The first search after a load; what part of the peer's time it takes.
double MeasureFirst(const std::string& file, const std::string& term, SearchPeer& peer,
                    std::uint32_t rounds) {
  const SongInfo terms = Terms(term);
  Series ours;
  Series theirs;
  for (std::uint32_t round = 0; round < rounds; ++round) {
    const SearchedLibrary library(file);
    WarmMemory(std::uint64_t{1} << 28);
    ours.Add(SecondsOfSearch(terms));
    AgentFinalizer();
    theirs.Add(SecondsOf([&] { (void)peer.Count(term); }));
  }
  fmt::print("\n\"{}\", the first search after a load\n", term);
  PrintOurs("SearchSong", ours);
  PrintPeer(peer.Name(), theirs, ours);
  return ours.Over(theirs).Median();
}

// Nearly all tracks match: a common letter for each text. Result: how much longer the largest file
// takes than the smallest.
double MeasureAllMatching(const std::vector<std::string>& files, std::uint32_t rounds) {
  const std::string letters[] = {"e", "a", "o"};
  const SongInfo terms = Terms(letters[0], letters[1], letters[2]);
  std::vector<SearchedLibrary> libraries(files.begin(), files.end());
  std::vector<std::int32_t> counts;
  for (const SearchedLibrary& library : libraries) {
    library.Select();
    counts.push_back(CheckedCount(terms));
  }
  std::vector<Series> seconds(libraries.size());
  for (std::uint32_t round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < libraries.size(); ++i) {
      libraries[i].Select();
      seconds[i].Add(SecondsOfRepeated(terms));
    }
  }
  fmt::print("\nnearly all tracks match\n");
  for (std::size_t i = 0; i < libraries.size(); ++i) {
    const std::int32_t trackCount = libraries[i].trackCount();
    fmt::print("  {:>7} of {:>7} tracks  {:>9.3f} ms {:>7.1f} ns a track\n", counts[i], trackCount,
               seconds[i].Median() * 1e3, seconds[i].Median() * 1e9 / trackCount);
  }
  return seconds.back().Over(seconds.front()).Median();
}

void PrintTarget(std::string_view what, double value, double mark, bool isMost) {
  const bool passes = isMost ? value <= mark : value >= mark;
  fmt::print("{:<62}{:>8.2f}  {} {:<5} {}\n", what, value, isMost ? "at most " : "at least", mark,
             passes ? "PASS" : "FAIL");
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

void Measure(const Options& options) {
  std::vector<std::string> files = options.files;
  std::sort(files.begin(), files.end(), [](const std::string& a, const std::string& b) {
    return std::filesystem::file_size(a) < std::filesystem::file_size(b);
  });
  const SearchedLibrary library(files.back());
  const TrackTexts texts = ReadTexts();
  const Peers peers = MakePeers(texts, files.back());
  fmt::print("{}: {} tracks, {} rounds\n", files.back(), library.trackCount(), options.rounds);

  double few = 0;
  for (const std::string& term : options.terms) {
    const double ratio = MeasureTerm(term, peers, options);
    const bool isFrequent = term == options.terms.front();
    if (!isFrequent && (few == 0 || ratio < few)) few = ratio;
  }
  const double half = MeasureTerm(TermOfHalf(library.trackCount()), peers, options);
  AgentFinalizer();
  const double first = MeasureFirst(files.back(), options.terms.front(), *peers[1], options.rounds);
  const double growth = files.size() < 2 ? 0 : MeasureAllMatching(files, options.rounds);

  fmt::print("\n");
  const std::string_view folding = peers[0]->Name();
  PrintTarget(fmt::format("all terms but the first: {} / ours", folding), few, 100, false);
  PrintTarget(fmt::format("half of the tracks match: {} / ours", folding), half, 12, false);
  PrintTarget(fmt::format("first search: ours / {}", peers[1]->Name()), first, 0.6, true);
  if (growth > 0) PrintTarget("all match: largest file / smallest", growth, 13, true);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("Measures the song search.", "search");
  app.footer(footer);
  app.add_option("--rounds", options.rounds, "Measured runs of each search")
      ->check(CLI::Range(1, 10000))
      ->capture_default_str();
  app.add_option("--term", options.terms, "Terms to search for, the first a frequent one");
  app.add_option("FILE", options.files, "Library files")->required()->check(CLI::ExistingFile);
  try {
    app.parse(argc, argv);
    Measure(options);
    return 0;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  } catch (const std::exception& error) {
    fmt::print(stderr, "search: {}\n", error.what());
    return 1;
  }
}
