// load_library: measures how long the library takes to load library files, as a host sees it,
// beside the parsers that others use.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "bench/load/LoadReport.h"
#include "bench/load/Rounds.h"
#include "bench/report/Benchmark.h"

namespace {

using namespace tavrel::bench;

constexpr char kFooter[] =
    "Every run has a process of its own, and memory is warmed up before it. Times of\n"
    "different calls must not be compared, ratios may: machines have fast and slow phases.\n"
    "\n"
    "Examples:\n"
    "  generate_library --tracks 100000 -o library.xml && load_library library.xml\n"
    "  load_library --peers none --library other-build/lib/libTavrel.so.1 library.xml";

// Larger files would keep the slow loaders busy for minutes, with gigabytes of memory.
constexpr std::size_t kLargestForSlow = 200'000'000;

struct Options {
  std::uint32_t slowRounds = 3;
  std::string peers = "all";
  std::string library = TAVREL_LIBRARY_NAME;
  std::vector<std::string> files;
};

std::vector<Loader> ChosenLoaders(const Options& options) {
  std::vector<Loader> loaders = {TavrelLoader(options.library)};
  if (options.peers == "none") return loaders;
  for (Loader& peer : AllPeers()) {
    if (!peer.slow || options.peers != "fast") loaders.push_back(std::move(peer));
  }
  return loaders;
}

std::vector<Input> InputsBySize(const std::vector<std::string>& files) {
  std::vector<Input> inputs;
  for (const std::string& file : files) inputs.push_back(LookAt(file));
  std::sort(inputs.begin(), inputs.end(),
            [](const Input& a, const Input& b) { return a.bytes < b.bytes; });
  return inputs;
}

// Whether the slow loaders are measured with that one of the inputs.
bool IsForSlow(const Input& input, const std::vector<Input>& inputs, const Options& options) {
  if (input.bytes > kLargestForSlow) return false;
  if (options.peers != "largest") return true;
  return std::none_of(inputs.begin(), inputs.end(), [&](const Input& other) {
    return other.bytes > input.bytes && other.bytes <= kLargestForSlow;
  });
}

void MeasureLoaders(const std::vector<Input>& inputs, const std::vector<Loader>& loaders,
                    const Options& options, std::uint32_t rounds, Report& report) {
  std::vector<Case> cases;
  for (const Input& input : inputs) {
    for (const Loader& loader : loaders) {
      if (loader.slow && !IsForSlow(input, inputs, options)) continue;
      cases.push_back({&input, &loader, {}});
    }
  }
  RunRounds(cases, {rounds, options.slowRounds});
  AddResults(inputs, cases, report);
}

// Rounds of the library alone, so that its loads of different files stand close together in time. They
// take so little of it that there can be more of them.
void MeasureEvenness(const std::vector<Input>& inputs, const Loader& library, std::uint32_t rounds,
                     Report& report) {
  if (inputs.size() < 2) return;
  std::vector<Case> cases;
  for (const Input& input : inputs) cases.push_back({&input, &library, {}});
  RunRounds(cases, {3 * rounds, 3 * rounds});
  AddEvenness(cases, report);
}

void Measure(const Options& options, std::uint32_t rounds, Report& report) {
  const std::vector<Loader> loaders = ChosenLoaders(options);
  const std::vector<Input> inputs = InputsBySize(options.files);
  AddFacts(inputs, loaders, report);
  MeasureLoaders(inputs, loaders, options, rounds, report);
  MeasureEvenness(inputs, loaders.front(), rounds, report);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  Benchmark benchmark("load_library", "Measures loading and unloading library files.", 9);
  benchmark.Explain(kFooter);
  benchmark.Take(options.files);
  Arguments& arguments = benchmark.arguments();
  arguments.Number("--peer-rounds", options.slowRounds,
                   "The same for peers that take over a second", 1, 10000);
  arguments.OneOf("--peers", options.peers, {"all", "largest", "fast", "none"},
                  "all; largest (libxml2, libplist and plistlib with the largest file only); fast "
                  "(without those); none");
  arguments.Text("--library", options.library, "Shared library to load");
  return benchmark.Run(argc, argv,
                       [&](Report& report) { Measure(options, benchmark.rounds(), report); });
}
