#include "bench/load/LoadReport.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "bench/report/Evenness.h"

namespace tavrel::bench {
namespace {

struct Goal {
  int number;
  const char* peer;
  double pass;
  double moonshot;
};

constexpr Goal kOnTheLargest[] = {{1, kPugixml, 3.0, 4.0}, {2, kPugixmlHuge, 1.3, 1.75}};
constexpr Goal kOfTheSlow[] = {
    {5, kLibxml, 25, 45}, {5, kLibplist, 15, 25}, {5, kPlistlib, 50, 90}};

const Case* Find(const std::vector<Case>& cases, const Input& input, std::string_view loader) {
  const auto found = std::find_if(cases.begin(), cases.end(), [&](const Case& each) {
    return each.input == &input && each.loader->name == loader;
  });
  return found == cases.end() ? nullptr : &*found;
}

// The largest of the files that this loader took part in.
const Input* LargestOf(const std::vector<Input>& inputs, const std::vector<Case>& cases,
                       std::string_view loader) {
  const Input* largest = nullptr;
  for (const Input& input : inputs) {
    if (Find(cases, input, loader) != nullptr) largest = &input;
  }
  return largest;
}

Series NanosecondsAByte(const Case& run, const Series& seconds) {
  return seconds.Times(1e9 / static_cast<double>(run.input->bytes));
}

void AddCase(const Case& run, Report& report) {
  report.Section(fmt::format("{}, {}", run.input->name, run.loader->name));
  report.Seconds("load", run.Seconds());
  report.Seconds("user", run.Values(&LoadFigures::userSeconds));
  report.Seconds("system", run.Values(&LoadFigures::systemSeconds));
  report.Seconds("release", run.Values(&LoadFigures::releaseSeconds));
  report.Figure("peak memory of the load", "MB", run.Values(&LoadFigures::peakBytes).Times(1e-6));
  report.Figure("page faults of the load", "", run.Values(&LoadFigures::pageFaults));
  report.Figure("load, a byte", "ns", NanosecondsAByte(run, run.Seconds()));
}

// Processor time says something also where other work keeps the machine busy.
void AddRatios(const Input& input, const std::vector<Case>& cases, Report& report) {
  const Case* ours = Find(cases, input, kTavrel);
  const auto table = [&](const char* what, Series (Case::*seconds)() const) {
    report.Section(fmt::format("{}, {} over that of {}", input.name, what, kTavrel));
    for (const Case& run : cases) {
      if (run.input != &input || &run == ours) continue;
      report.Figure(run.loader->name, "x", Ratio((run.*seconds)(), (ours->*seconds)()));
    }
  };
  table("load", &Case::Seconds);
  table("processor time", &Case::ProcessorSeconds);
}

void AddGoal(const Goal& goal, const Input* input, const std::vector<Case>& cases, Report& report) {
  const Case* peer = input == nullptr ? nullptr : Find(cases, *input, goal.peer);
  if (peer == nullptr) return;
  report.Add({goal.number, fmt::format("{} / {}, {}", goal.peer, kTavrel, input->name),
              Ratio(peer->Seconds(), Find(cases, *input, kTavrel)->Seconds()), Bound::kAtLeast,
              goal.pass, goal.moonshot});
}

// The text and the records, and nothing else: 64 bytes for an element, 24 for an attribute, for a
// track the 120 of its record and a pointer, for an item a pointer.
double LeastMemory(const Input& input) {
  const std::int64_t records =
      64 * input.elements + 24 * input.attributes + 128 * input.tracks + 8 * input.items;
  return static_cast<double>(input.bytes) + static_cast<double>(records);
}

void AddMemory(const Input& input, const std::vector<Case>& cases, Report& report) {
  const Series peak = Find(cases, input, kTavrel)->Values(&LoadFigures::peakBytes);
  report.Add({6, "peak memory / text and records, " + input.name,
              peak.Times(1 / LeastMemory(input)), Bound::kAtMost, 1.03, 1.01});
}

}  // namespace

void AddFacts(const std::vector<Input>& inputs, const std::vector<Loader>& loaders,
              Report& report) {
  for (const Loader& loader : loaders) report.Fact(loader.name, loader.version);
  for (const Input& input : inputs) {
    report.Fact(input.name, fmt::format("{} bytes, FNV-1a {:016x}, {} elements, {} attributes, "
                                        "{} tracks, {} items",
                                        input.bytes, input.hash, input.elements, input.attributes,
                                        input.tracks, input.items));
  }
}

void AddResults(const std::vector<Input>& inputs, const std::vector<Case>& cases, Report& report) {
  for (const Case& run : cases) AddCase(run, report);
  const bool hasPeers = cases.size() > inputs.size();
  for (const Input& input : inputs) {
    if (hasPeers) AddRatios(input, cases, report);
  }
  const std::size_t first = inputs.size() < 2 ? 0 : inputs.size() - 2;
  for (const Goal& goal : kOnTheLargest) {
    for (std::size_t i = first; i < inputs.size(); ++i) AddGoal(goal, &inputs[i], cases, report);
  }
  for (const Goal& goal : kOfTheSlow) {
    AddGoal(goal, LargestOf(inputs, cases, goal.peer), cases, report);
  }
  for (const Input& input : inputs) AddMemory(input, cases, report);
}

void AddEvenness(const std::vector<Case>& cases, Report& report) {
  report.Section("processor time of loads of all files, right after one another");
  std::vector<Series> costs;
  for (const Case& run : cases) {
    costs.push_back(NanosecondsAByte(run, run.ProcessorSeconds()));
    report.Figure(run.input->name + ", a byte", "ns", costs.back());
  }
  const Pair pair = MostUneven(costs);
  report.Add({8,
              fmt::format("processor time of a load, a byte: {} / {}", cases[pair.over].input->name,
                          cases[pair.under].input->name),
              pair.ratio, Bound::kAtMost, 1.4, 1.2});
}

}  // namespace tavrel::bench
