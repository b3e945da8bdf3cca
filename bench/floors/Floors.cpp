// floors: measures what no load can do without, and what it could do instead.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "bench/floors/FloorSteps.h"
#include "bench/report/Machine.h"
#include "bench/report/Program.h"
#include "bench/report/Report.h"
#include "bench/support/Random.h"

namespace {

using namespace tavrel::bench;

constexpr char footer[] =
    "Steps take turns in random order, and each ratio is one of a round. Times are those of "
    "the\n"
    "processor, system calls included. Before a step that takes memory from the system, as much "
    "is\n"
    "touched and given back: a virtual machine gives free pages back to its host, and the first\n"
    "touch of such a page costs many times that of a page that the machine still has.\n"
    "\n"
    "Example:\n"
    "  generate_library --tracks 100000 -o library.xml && floors library.xml";

// In this process: after a fork every page would have to be taken over again.
void WarmMemoryFor(const FloorStep& step) {
  if (step.freshBytes == 0) return;
  Region region(step.freshBytes + step.freshBytes / 4, Pages::kHuge);
  region.Touch();
}

template <class Element>
void Shuffle(std::vector<Element*>& elements, Random& random) {
  for (std::size_t i = elements.size(); i > 1; --i) {
    std::swap(elements[i - 1], elements[random.Below(static_cast<std::uint32_t>(i))]);
  }
}

template <class Element>
std::vector<Element*> Pointers(std::vector<Element>& elements) {
  std::vector<Element*> pointers;
  for (Element& element : elements) pointers.push_back(&element);
  return pointers;
}

// What is compared runs close together: a machine has fast and slow moments.
void RunRounds(std::vector<FloorGroup>& groups, std::uint32_t rounds) {
  Random random(1);
  std::vector<FloorGroup*> order = Pointers(groups);
  for (std::uint32_t round = 0; round < rounds; ++round) {
    Shuffle(order, random);
    for (FloorGroup* group : order) {
      std::vector<FloorStep*> steps = Pointers(group->steps);
      Shuffle(steps, random);
      for (FloorStep* step : steps) {
        WarmMemoryFor(*step);
        step->seconds.Add(step->run());
      }
    }
  }
}

void Measure(const std::string& file, const CommonOptions& options) {
  Report report("floors");
  AddMachineFacts(report);
  FloorInput input(file);
  report.Fact("input", fmt::format("{} bytes, {} elements", input.fileBytes, input.elements));
  std::vector<FloorGroup> groups = ReadingGroups(input);
  groups.push_back(ScanningGroup(input));
  groups.push_back(RecordGroup(input));
  RunRounds(groups, options.rounds);
  for (const FloorGroup& group : groups) {
    report.Section(group.name);
    for (const FloorStep& step : group.steps) report.Seconds(step.name, step.seconds);
  }
  // Small pages cost so much that the check would not show.
  for (std::size_t i = 0; i < 2; ++i) {
    const std::vector<FloorStep>& steps = groups[i].steps;
    report.Add({9, groups[i].name + ": with the check / without",
                steps[1].seconds.Over(steps[0].seconds), Bound::kAtMost, 1.25, 1.12});
  }
  report.Finish(options.jsonFile);
}

}  // namespace

int main(int argc, char** argv) {
  CommonOptions options{15, ""};
  std::string file;
  CLI::App app("Measures what no load can do without.", "floors");
  app.footer(footer);
  AddCommonOptions(app, options);
  app.add_option("FILE", file, "Library file")->required()->check(CLI::ExistingFile);
  return RunProgram(app, argc, argv, [&] { Measure(file, options); });
}
