// pass: measures the pass alone, with text and records resident, beside other parsers.
#include <fmt/format.h>
#include <malloc.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bench/pass/Passes.h"
#include "bench/pass/Peers.h"
#include "bench/pass/ResidentMemory.h"
#include "bench/report/Benchmark.h"
#include "bench/report/Turns.h"
#include "bench/support/Region.h"
#include "bench/support/WholeFile.h"

namespace {

using namespace tavrel::bench;

constexpr char kFooter[] =
    "The text is copied to memory that is there already before each run, and records come\n"
    "from memory that is there too: measured is what a parser does, not what the system does\n"
    "for it. All of them take turns in random order, each ratio is one of a round, and times\n"
    "are processor times.\n"
    "\n"
    "Example:\n"
    "  generate_library --tracks 100000 -o library.xml && pass library.xml";

// The text again and again, in the same place.
class ResidentText {
 public:
  explicit ResidentText(const std::string& text) : text_(text), region_(text.size() + 1) {}

  [[nodiscard]] char* Fresh() const {
    ZeroReleasedBlocks();  // before the copy, so that all find the same in the caches
    std::memcpy(region_.data(), text_.c_str(), region_.size());
    return region_.data();
  }
  [[nodiscard]] std::size_t size() const { return text_.size(); }

 private:
  const std::string& text_;
  ResidentRegion region_;
};

void Check(const std::vector<Pass>& passes, const ResidentText& text, Report& report) {
  CheckRandomTexts(passes);
  const auto expected = passes.front().summary(text.Fresh(), text.size());
  for (const Pass& pass : passes) {
    if (pass.summary(text.Fresh(), text.size()) != expected) {
      throw std::runtime_error("another tree: " + pass.name);
    }
  }
  report.Fact("bytes", std::to_string(text.size()));
  report.Fact("elements", std::to_string(expected.elements));
  report.Fact("attributes", std::to_string(expected.attributes));
  report.Fact("tree hash, equal for all passes", fmt::format("{:016x}", expected.hash));
}

void AddTargets(const std::vector<Step>& steps, Report& report) {
  struct Marks {
    int number;
    std::string peer;
    double pass;
    double moonshotAvx2;
    double moonshotAvx512;
  };
  for (const Marks& marks :
       {Marks{3, Rapidxml().name, 1.6, 2.0, 2.5}, Marks{4, Pugixml().name, 1.8, 2.3, 3.0}}) {
    const Step* peer = StepNamed(steps, marks.peer);
    for (const auto& [name, moonshot] :
         {std::pair(kAvx2Name, marks.moonshotAvx2), std::pair(kAvx512Name, marks.moonshotAvx512)}) {
      const Step* ours = StepNamed(steps, name);
      if (peer == nullptr || ours == nullptr) continue;
      report.Add({marks.number, fmt::format("{} / {}", marks.peer, name),
                  peer->seconds.Over(ours->seconds), Bound::kAtLeast, marks.pass, moonshot});
    }
  }
}

void Measure(const std::string& file, std::uint32_t rounds, Report& report) {
  // Freed chunks of the literal form stay in the process.
  mallopt(M_TRIM_THRESHOLD, INT32_MAX);
  mallopt(M_MMAP_THRESHOLD, INT32_MAX);
  std::string contents = ContentsOf(file);
  contents.resize(std::strlen(contents.c_str()));  // where the text ends for the pass
  const ResidentText text(contents);
  ReservePeerMemory(16 * contents.size() + (std::size_t{64} << 20));

  std::vector<Step> steps;
  const auto add = [&](const std::string& name, const auto& run) {
    steps.push_back({name, [&text, run] { return run(text.Fresh(), text.size()); }});
  };
  const std::vector<Pass> passes = AllPasses();
  for (const Pass& pass : passes) add(pass.name, pass.run);
  for (const Peer& peer : {Rapidxml(), Pugixml()}) {
    report.Fact(peer.name, peer.version);
    if (peer.run != nullptr) add(peer.name, peer.run);
  }
  Check(passes, text, report);
  WarmUp(steps);
  RunInTurns(steps, rounds);

  report.Section("the pass alone, everything resident");
  for (const Step& step : steps) report.Seconds(step.name, step.seconds);
  const Step& literal = steps.front();
  report.Section("how many times as fast as the literal form");
  for (const Step& step : steps) {
    report.Figure(step.name, "x", literal.seconds.Over(step.seconds));
  }
  AddTargets(steps, report);
}

}  // namespace

int main(int argc, char** argv) {
  std::string file;
  Benchmark benchmark("pass", "Measures the pass alone beside other parsers.", 15);
  benchmark.Explain(kFooter);
  benchmark.Take(file);
  return benchmark.Run(argc, argv,
                       [&](Report& report) { Measure(file, benchmark.rounds(), report); });
}
