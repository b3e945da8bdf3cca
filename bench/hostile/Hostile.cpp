// hostile: measures documents of texts that were made to take a parser forever.
#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/hostile/Families.h"
#include "bench/hostile/Parsers.h"
#include "bench/report/Benchmark.h"
#include "bench/report/Turns.h"
#include "bench/support/ChildRun.h"

namespace {

using namespace tavrel::bench;

constexpr char kFooter[] =
    "Every run has a process of its own, and memory is warmed up before it. Times are\n"
    "processor times from a text in memory to a tree, copying the text included.\n"
    "\n"
    "Example:\n"
    "  hostile --rounds 9";

constexpr std::size_t kSmall = std::size_t{4} << 20;
constexpr std::size_t kLarge = std::size_t{16} << 20;

Parsed RunFresh(const Parser& parser, std::string_view text) {
  WarmMemory(40 * text.size());
  return RunInChild([&] { return parser.parse(text); });
}

Step StepOf(const Parser& parser, std::string name, const std::string& text) {
  return {std::move(name), [&] { return RunFresh(parser, text).seconds; }};
}

void MeasureGrowth(std::uint32_t rounds, Report& report) {
  report.Section("ours, from text to tree");
  const Parser ours = OurDocument();
  for (const Family& family : AllFamilies()) {
    const std::string small = family.OfSize(kSmall);
    const std::string large = family.OfSize(kLarge);
    std::vector<Step> steps = {StepOf(ours, family.name + ", 4 MB", small),
                               StepOf(ours, family.name + ", 16 MB", large)};
    RunInTurns(steps, rounds);
    for (const Step& step : steps) report.Seconds(step.name, step.seconds);
    report.Add({17, family.name + ", 16 MB / 4 MB", steps[1].seconds.Over(steps[0].seconds),
                Bound::kAtMost, 6, 4.5});
  }
}

struct Marks {
  std::string family;
  double pass;
  double moonshot;
};

// Ours first; then the peers that do not refuse the text.
void MeasurePeers(const Marks& marks, std::uint32_t rounds, Report& report) {
  const std::vector<Family> families = AllFamilies();
  const auto family = std::find_if(families.begin(), families.end(),
                                   [&](const Family& f) { return f.name == marks.family; });
  const std::string text = family->OfSize(kLarge);
  const Parser ours = OurDocument();
  const std::vector<Parser> peers = Peers();
  std::vector<Step> steps = {StepOf(ours, ours.name, text)};
  report.Section(marks.family + ", 16 MB");
  for (const Parser& peer : peers) {
    if (RunFresh(peer, text).accepted) {
      steps.push_back(StepOf(peer, peer.name, text));
    } else {
      report.Fact(peer.name + ", " + marks.family, "refused");
    }
  }
  RunInTurns(steps, rounds);
  for (const Step& step : steps) report.Seconds(step.name, step.seconds);
  const auto fastest = std::min_element(
      steps.begin() + 1, steps.end(),
      [](const Step& a, const Step& b) { return a.seconds.Median() < b.seconds.Median(); });
  if (fastest == steps.end()) return;
  report.Add({18, fmt::format("{}, {} / ours", marks.family, fastest->name),
              fastest->seconds.Over(steps[0].seconds), Bound::kAtLeast, marks.pass,
              marks.moonshot});
}

void Measure(std::uint32_t rounds, Report& report) {
  if (Peers().size() < 2) report.Fact("peers", "one or both were not there when this was built");
  MeasureGrowth(rounds, report);
  for (const Marks& marks : {Marks{kSectionsInText, 0.5, 1.5}, Marks{kSectionsInValue, 0.1, 0.5},
                             Marks{kMillionAttributes, 0.3, 1.0}}) {
    MeasurePeers(marks, rounds, report);
  }
}

}  // namespace

int main(int argc, char** argv) {
  Benchmark benchmark("hostile", "Measures documents of hostile texts, beside other parsers.", 9);
  benchmark.Explain(kFooter);
  return benchmark.Run(argc, argv, [&](Report& report) { Measure(benchmark.rounds(), report); });
}
