// floors: measures what no load can do without, and what it could do instead.
#include <fmt/format.h>

#include <cstdint>
#include <string>
#include <vector>

#include "bench/floors/FloorSteps.h"
#include "bench/report/Benchmark.h"

namespace {

using namespace tavrel::bench;

constexpr char kFooter[] =
    "Steps that are compared take turns in random order, and each ratio is one of a round.\n"
    "Times are those of the processor, system calls included. Before a step that takes memory\n"
    "from the system, as much is touched and given back: a virtual machine gives free pages\n"
    "back to its host, and the first touch of such a page costs many times that of a page\n"
    "that the machine still has.\n"
    "\n"
    "Example:\n"
    "  generate_library --tracks 100000 -o library.xml && floors library.xml";

void Measure(const std::string& file, std::uint32_t rounds, Report& report) {
  FloorInput input(file);
  report.Fact("input", fmt::format("{} bytes, {} elements", input.fileBytes, input.elements));
  std::vector<FloorGroup> groups = ReadingGroups(input);
  groups.push_back(ScanningGroup(input));
  groups.push_back(RecordGroup(input));
  for (FloorGroup& group : groups) {
    RunInTurns(group.steps, rounds);
    report.Section(group.name);
    for (const Step& step : group.steps) report.Seconds(step.name, step.seconds);
  }
  // Small pages cost so much that the check would not show.
  for (std::size_t i = 0; i < 2; ++i) {
    const std::vector<Step>& steps = groups[i].steps;
    report.Add({9, groups[i].name + ": with the check / without",
                steps[1].seconds.Over(steps[0].seconds), Bound::kAtMost, 1.25, 1.12});
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::string file;
  Benchmark benchmark("floors", "Measures what no load can do without.", 15);
  benchmark.Explain(kFooter);
  benchmark.Take(file);
  return benchmark.Run(argc, argv,
                       [&](Report& report) { Measure(file, benchmark.rounds(), report); });
}
