// startup: how long a host waits for the library's first answer, beside what cannot be avoided.
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <stdio.h>
#include <stdlib.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "bench/report/Machine.h"
#include "bench/report/Program.h"
#include "bench/report/Report.h"
#include "bench/startup/SharedObject.h"
#include "bench/support/ChildRun.h"
#include "bench/support/LinkedHome.h"
#include "bench/support/Random.h"

namespace {

using namespace tavrel::bench;

constexpr char footer[] =
    "Each run is a new program, a small host in C. The floor is to open a library that does "
    "nothing and\n"
    "has the same dependencies, and to read the file once.\n"
    "\n"
    "Example:\n"
    "  generate_library --tracks 1000 -o library.xml && startup library.xml";

struct Options {
  CommonOptions common{100, {}};
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
  setenv("HOME", home.Path().c_str(), 1);
}

void AddFacts(const Options& options, Report& report) {
  AddMachineFacts(report);
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

void Measure(const Options& options) {
  Report report("startup");
  AddFacts(options, report);
  const LinkedHome home(options.file);
  SetVariables(options, home);
  RunProbe(kAsk);
  RunProbe(kFloor);

  Random random(1);
  Series library;
  Series floor;
  for (std::uint32_t round = 0; round < options.common.rounds; ++round) {
    const bool libraryFirst = random.Below(2) == 0;
    if (libraryFirst) library.Add(RunProbe(kAsk));
    floor.Add(RunProbe(kFloor));
    if (!libraryFirst) library.Add(RunProbe(kAsk));
  }
  report.Section("From dlopen() on");
  report.Seconds("library, to the first song's information", library);
  report.Seconds("floor: empty library, and one read of the file", floor);
  report.Add({19, "first answer / floor", library.Over(floor), Bound::kAtMost, 2.0, 1.5});
  report.Finish(options.common.jsonFile);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("Measures the time from dlopen() to the first answer.", "startup");
  app.footer(footer);
  AddCommonOptions(app, options.common);
  app.add_option("--library", options.library, "Shared library to load")->capture_default_str();
  app.add_option("FILE", options.file, "Library file, of 1,000 tracks")
      ->required()
      ->check(CLI::ExistingFile);
  return RunProgram(app, argc, argv, [&] { Measure(options); });
}
