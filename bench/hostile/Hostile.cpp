// hostile: measures documents of texts that were made to take a parser forever.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "bench/hostile/Families.h"
#include "bench/hostile/Parsers.h"
#include "bench/report/Machine.h"
#include "bench/report/Program.h"
#include "bench/report/Report.h"
#include "bench/support/ChildRun.h"

namespace {

using namespace tavrel::bench;

constexpr char footer[] =
    "Every run has a process of its own, and memory is warmed up before it. Times are processor\n"
    "times from a text in memory to a tree, copying the text included.\n"
    "\n"
    "Example:\n"
    "  hostile --rounds 9";

constexpr std::size_t kSmall = std::size_t{4} << 20;
constexpr std::size_t kLarge = std::size_t{16} << 20;

Parsed RunFresh(const Parser& parser, std::string_view text) {
  WarmMemory(40 * text.size());
  return RunInChild([&] { return parser.parse(text); });
}

// Runs each of them in turn. Result: a series for each; empty for one that refuses the text.
std::vector<Series> Measure(const std::vector<Parser>& parsers, std::string_view text,
                            std::uint32_t rounds) {
  std::vector<Series> times(parsers.size());
  std::vector<bool> refuses(parsers.size());
  for (std::uint32_t round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < parsers.size(); ++i) {
      const std::size_t turn = (i + round) % parsers.size();
      if (refuses[turn]) continue;
      const Parsed parsed = RunFresh(parsers[turn], text);
      refuses[turn] = !parsed.accepted;
      if (parsed.accepted) times[turn].Add(parsed.seconds);
    }
  }
  return times;
}

void MeasureGrowth(std::uint32_t rounds, Report& report) {
  report.Section("ours, from text to tree");
  for (const Family& family : AllFamilies()) {
    const std::string small = family.OfSize(kSmall);
    const std::string large = family.OfSize(kLarge);
    Series smallTimes;
    Series largeTimes;
    for (std::uint32_t round = 0; round < rounds; ++round) {
      smallTimes.Add(RunFresh(OurDocument(), small).seconds);
      largeTimes.Add(RunFresh(OurDocument(), large).seconds);
    }
    report.Seconds(family.name + ", 4 MB", smallTimes);
    report.Seconds(family.name + ", 16 MB", largeTimes);
    report.Add(
        {17, family.name + ", 16 MB / 4 MB", largeTimes.Over(smallTimes), Bound::kAtMost, 6, 4.5});
  }
}

void MeasurePeers(std::uint32_t rounds, Report& report) {
  struct Marks {
    std::string name;
    double pass;
    double moonshot;
  };
  std::vector<Parser> parsers = {OurDocument()};
  for (const Parser& peer : Peers()) parsers.push_back(peer);
  for (const Marks& marks : {Marks{kSectionsInText, 0.5, 1.5}, Marks{kSectionsInValue, 0.1, 0.5},
                             Marks{kMillionAttributes, 0.3, 1.0}}) {
    const std::vector<Family> families = AllFamilies();
    const auto family = std::find_if(families.begin(), families.end(),
                                     [&](const Family& f) { return f.name == marks.name; });
    const std::vector<Series> times = Measure(parsers, family->OfSize(kLarge), rounds);
    report.Section(marks.name + ", 16 MB");
    std::size_t fastest = 0;
    for (std::size_t i = 0; i < parsers.size(); ++i) {
      if (times[i].size() == 0) {
        report.Fact(parsers[i].name + ", " + marks.name, "refused");
        continue;
      }
      report.Seconds(parsers[i].name, times[i]);
      if (i > 0 && (fastest == 0 || times[i].Median() < times[fastest].Median())) fastest = i;
    }
    if (fastest == 0) continue;
    report.Add({18, fmt::format("{}, {} / ours", marks.name, parsers[fastest].name),
                times[fastest].Over(times[0]), Bound::kAtLeast, marks.pass, marks.moonshot});
  }
}

}  // namespace

int main(int argc, char** argv) {
  CommonOptions options{9, ""};
  CLI::App app("Measures documents of hostile texts, beside other parsers.", "hostile");
  app.footer(footer);
  AddCommonOptions(app, options);
  return RunProgram(app, argc, argv, [&] {
    Report report("hostile");
    AddMachineFacts(report);
    if (Peers().size() < 2) report.Fact("peers", "one or both were not there when this was built");
    MeasureGrowth(options.rounds, report);
    MeasurePeers(options.rounds, report);
    report.Finish(options.jsonFile);
  });
}
