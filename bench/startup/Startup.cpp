// startup: how long a host waits for the library's first answer, beside what cannot be avoided.
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <stdio.h>
#include <stdlib.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/report/Benchmark.h"
#include "bench/report/Turns.h"
#include "bench/startup/SharedObject.h"
#include "bench/support/ChildRun.h"
#include "bench/support/LinkedHome.h"

namespace {

using namespace tavrel::bench;

constexpr char kFooter[] =
    "Each run is a new program, a small host in C. The floor is to open a library that does\n"
    "nothing and has the same dependencies, and to read the file once.\n"
    "\n"
    "Example:\n"
    "  generate_library --tracks 1000 -o library.xml && startup library.xml";

struct Options {
  std::string library = TAVREL_LIBRARY_FILE;
  std::string file;
};

// What the probe prints. The paths travel in variables: no shell must read them.
double RunProbe(const char* command) {
  WarmMemory(std::uint64_t{64} << 20);
  FILE* pipe = popen(command, "r");
  double seconds = 0;
  const bool good = pipe != nullptr && fscanf(pipe, "%lf", &seconds) == 1;
  if (pipe == nullptr || pclose(pipe) != 0 || !good) {
    throw std::runtime_error(fmt::format("the probe failed: {}", command));
  }
  return seconds;
}

constexpr char kAsk[] = "exec \"$TAVREL_PROBE\" \"$TAVREL_OBJECT\"";
constexpr char kFloor[] = "exec \"$TAVREL_PROBE\" \"$TAVREL_FLOOR\" \"$TAVREL_FILE\"";

void SetVariables(const Options& options, const LinkedHome& home) {
  setenv("TAVREL_PROBE", TAVREL_PROBE_FILE, 1);
  setenv("TAVREL_OBJECT", options.library.c_str(), 1);
  setenv("TAVREL_FLOOR", TAVREL_FLOOR_FILE, 1);
  setenv("TAVREL_FILE", options.file.c_str(), 1);
  setenv("HOME", home.path().c_str(), 1);
}

void AddFacts(const Options& options, Report& report) {
  const SharedObject library = ReadSharedObject(options.library);
  const SharedObject floor = ReadSharedObject(TAVREL_FLOOR_FILE);
  if (library.needed != floor.needed) {
    throw std::runtime_error(fmt::format("the floor needs {}, the library {}",
                                         fmt::join(floor.needed, " "),
                                         fmt::join(library.needed, " ")));
  }
  report.Fact("dependencies", fmt::format("{}", fmt::join(library.needed, " ")));
  report.Fact("relocations of the library", std::to_string(library.relocations));
  report.Fact("constructors of the library", std::to_string(library.constructors));
}

void Measure(const Options& options, std::uint32_t rounds, Report& report) {
  AddFacts(options, report);
  const LinkedHome home(options.file);
  SetVariables(options, home);
  std::vector<Step> steps = {
      {"library, to the first song's information", [] { return RunProbe(kAsk); }},
      {"floor: empty library, and one read of the file", [] { return RunProbe(kFloor); }}};
  WarmUp(steps);
  RunInTurns(steps, rounds);
  report.Section("From dlopen() on");
  for (const Step& step : steps) report.Seconds(step.name, step.seconds);
  report.Add({19, "first answer / floor", steps[0].seconds.Over(steps[1].seconds), Bound::kAtMost,
              2.0, 1.5});
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  Benchmark benchmark("startup", "Measures the time from dlopen() to the first answer.", 100);
  benchmark.Explain(kFooter);
  benchmark.Take(options.file);
  benchmark.arguments().Text("--library", options.library, "Shared library to load");
  return benchmark.Run(argc, argv,
                       [&](Report& report) { Measure(options, benchmark.rounds(), report); });
}
