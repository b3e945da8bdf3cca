// load_library: measures how long the library takes to load library files, as a host sees it,
// beside the parsers that others use.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "bench/load/LoadReport.h"
#include "bench/load/Rounds.h"
#include "bench/report/Program.h"

namespace {

using namespace tavrel::bench;

constexpr char footer[] =
    "Every run has a process of its own, and memory is warmed up before it. Times of different "
    "calls\n"
    "must not be compared, ratios may: machines have fast and slow phases.\n"
    "\n"
    "Examples:\n"
    "  generate_library --tracks 100000 -o library.xml && load_library library.xml\n"
    "  load_library --peers none --library other-build/lib/libTavrel.so.0 library.xml";

// Larger files would keep the slow programs busy for minutes, with gigabytes of memory.
constexpr std::size_t kLargestForSlow = 200'000'000;

struct Options {
  CommonOptions common{9, {}};
  std::uint32_t slowRounds = 3;
  std::string peers = "all";
  std::string library = TAVREL_LIBRARY_NAME;
  std::vector<std::string> files;
};

std::vector<Program> ChosenPrograms(const Options& options) {
  std::vector<Program> programs = {TavrelProgram(options.library)};
  if (options.peers == "none") return programs;
  for (Program& peer : AllPeers()) {
    if (!peer.slow || options.peers != "fast") programs.push_back(std::move(peer));
  }
  return programs;
}

std::vector<Input> InputsBySize(const std::vector<std::string>& files) {
  std::vector<Input> inputs;
  for (const std::string& file : files) inputs.push_back(LookAt(file));
  std::sort(inputs.begin(), inputs.end(),
            [](const Input& a, const Input& b) { return a.bytes < b.bytes; });
  return inputs;
}

// Whether the slow programs are measured with that one of the inputs.
bool IsForSlow(const Input& input, const std::vector<Input>& inputs, const Options& options) {
  if (input.bytes > kLargestForSlow) return false;
  if (options.peers != "largest") return true;
  return std::none_of(inputs.begin(), inputs.end(), [&](const Input& other) {
    return other.bytes > input.bytes && other.bytes <= kLargestForSlow;
  });
}

void Measure(const Options& options) {
  const std::vector<Program> programs = ChosenPrograms(options);
  const std::vector<Input> inputs = InputsBySize(options.files);
  std::vector<Case> cases;
  for (const Input& input : inputs) {
    for (const Program& program : programs) {
      if (program.slow && !IsForSlow(input, inputs, options)) continue;
      cases.push_back({&input, &program, {}});
    }
  }
  Report report("load_library");
  AddFacts(inputs, programs, report);
  RunRounds(cases, {options.common.rounds, options.slowRounds});
  AddResults(inputs, cases, report);
  report.Finish(options.common.jsonFile);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("Measures loading and unloading library files.", "load_library");
  app.footer(footer);
  AddCommonOptions(app, options.common);
  app.add_option("--peer-rounds", options.slowRounds, "The same for peers that take over a second")
      ->check(CLI::Range(1, 10000))
      ->capture_default_str();
  app.add_option("--peers", options.peers,
                 "all; largest (libxml2, libplist and plistlib with the largest file only); fast "
                 "(without those); none")
      ->check(CLI::IsMember({"all", "largest", "fast", "none"}))
      ->capture_default_str();
  app.add_option("--library", options.library, "Shared library to load")->capture_default_str();
  app.add_option("FILE", options.files, "Library files")->required()->check(CLI::ExistingFile);
  return RunProgram(app, argc, argv, [&] { Measure(options); });
}
