// load_phases: where the time of a load goes.
#include <fmt/format.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/load/Phases.h"
#include "bench/report/Benchmark.h"
#include "bench/report/Turns.h"
#include "bench/support/ChildRun.h"
#include "bench/support/InstructionSets.h"

namespace {

using namespace tavrel::bench;

constexpr char kFooter[] =
    "Every run has a process of its own, and memory is warmed up before it. The parts are\n"
    "called one after the other, as a load calls them; a whole load stands beside them in\n"
    "every round, and so does what no load can do without.";

struct Rounds {
  std::vector<Parts> parts;
  std::vector<Whole> wholes;
  std::vector<Floor> floors;
};

Rounds RunRounds(const std::string& file, std::uint32_t count) {
  const std::uint64_t warmBytes = std::filesystem::file_size(file) * 8;
  const std::size_t elements = RunInChild([&] { return RunParts(file); }).elements;
  Rounds rounds;
  const std::function<void()> kinds[] = {
      [&] { rounds.parts.push_back(RunInChild([&] { return RunParts(file); })); },
      [&] { rounds.wholes.push_back(RunInChild([&] { return RunWhole(file); })); },
      [&] { rounds.floors.push_back(RunInChild([&] { return RunFloor(file, elements); })); }};
  InTurns(count, std::size(kinds), [&](std::size_t kind) {
    WarmMemory(warmBytes);
    kinds[kind]();
  });
  const std::int32_t tracks = rounds.wholes.front().trackCount;
  if (tracks == 0 || tracks != rounds.parts.front().trackCount) {
    throw std::runtime_error("the parts do not find the tracks that the whole load finds");
  }
  return rounds;
}

template <class Record, class Figure>
Series Collect(const std::vector<Record>& records, const Figure& figure) {
  Series series;
  for (const Record& record : records) series.Add(figure(record));
  return series;
}

// The rows of one piece of work. Result: its times by the wall's clock.
template <class Record, class CostOf>
Series AddRows(const char* label, const std::vector<Record>& records, const CostOf& costOf,
               double fileBytes, Report& report) {
  const auto series = [&](double Cost::*figure) {
    return Collect(records, [&](const Record& record) { return costOf(record).*figure; });
  };
  const Series seconds = series(&Cost::seconds);
  report.Seconds(label, seconds);
  report.Figure("  a byte", "ns", seconds.Times(1e9 / fileBytes));
  report.Figure("  a byte, by the processor", "ns",
                series(&Cost::processorSeconds).Times(1e9 / fileBytes));
  report.Figure("  page faults", "", series(&Cost::pageFaults));
  return seconds;
}

void AddFigures(const Rounds& rounds, double fileBytes, Report& report) {
  const auto part = [&](const char* label, const auto& costOf) {
    return AddRows(label, rounds.parts, costOf, fileBytes, report);
  };
  const auto whole = [&](const char* label, const auto& costOf) {
    return AddRows(label, rounds.wholes, costOf, fileBytes, report);
  };
  const auto floor = [&](const char* label, const auto& costOf) {
    return AddRows(label, rounds.floors, costOf, fileBytes, report);
  };
  report.Section("Parts of a load");
  part("reading and checking", [](const Parts& each) { return each.read; });
  part("pass", [](const Parts& each) { return each.pass; });
  part("track table", [](const Parts& each) { return each.tracks; });
  part("playlist table", [](const Parts& each) { return each.playlists; });
  const Series sum = part("all of them", [](const Parts& each) { return each.Sum(); });
  report.Section("Whole load");
  const Series load = whole("load", [](const Whole& each) { return each.load; });
  whole("release", [](const Whole& each) { return each.release; });
  report.Figure("sum of the parts / load", "x", sum.Over(load));

  report.Section("Floor, in fresh huge pages");
  floor("read(2)", [](const Floor& each) { return each.read; });
  floor("five fields of each record", [](const Floor& each) { return each.records; });
  const Series both = floor("both", [](const Floor& each) { return each.Sum(); });
  report.Figure("distance to the floor: load / both", "x", load.Over(both));
}

void AddTargets(const Rounds& rounds, Report& report) {
  const Series tables = Collect(
      rounds.parts, [](const Parts& each) { return each.Tables().seconds / each.Sum().seconds; });
  const Series release = Collect(
      rounds.wholes, [](const Whole& each) { return each.release.seconds / each.load.seconds; });
  report.Add({7, "tables / load", tables, Bound::kAtMost, 0.15, 0.08});
  report.Add({7, "release / load", release, Bound::kAtMost, 0.04, 0.02});
}

void Measure(const std::string& file, std::uint32_t count, Report& report) {
  report.Fact("instruction set", NameOf(tavrel::system::WidestSet()));
  const auto fileBytes = static_cast<double>(std::filesystem::file_size(file));
  const Rounds rounds = RunRounds(file, count);
  report.Fact("input",
              fmt::format("{:.0f} bytes, {} tracks", fileBytes, rounds.wholes.front().trackCount));
  AddFigures(rounds, fileBytes, report);
  AddTargets(rounds, report);
}

}  // namespace

int main(int argc, char** argv) {
  std::string file;
  Benchmark benchmark("load_phases", "Measures the parts of a load.", 15);
  benchmark.Explain(kFooter);
  benchmark.Take(file);
  return benchmark.Run(argc, argv,
                       [&](Report& report) { Measure(file, benchmark.rounds(), report); });
}
