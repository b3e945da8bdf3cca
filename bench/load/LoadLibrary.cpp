// load_library: measures how long the library takes to load a library file, as a host sees it.
#include <fmt/format.h>
#include <stdlib.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <numeric>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bench/ChildRun.h"
#include "bench/Loaders.h"
#include "bench/Random.h"

namespace {

using namespace tavrel::bench;

constexpr char footer[] =
    "Every run has a process of its own, and memory is warmed up before it. Processor times, page\n"
    "faults and peak memory are those of the whole process. Times of different calls must not be\n"
    "compared, ratios may: machines have fast and slow phases.\n"
    "\n"
    "Examples:\n"
    "  generate_library --tracks 100000 -o library.xml && load_library --peer library.xml\n"
    "  load_library --rounds 21 --library other-build/lib/libTavrel.so.0 library.xml";

struct Options {
  std::uint32_t rounds = 9;
  bool peer = false;
  std::string library = TAVREL_LIBRARY_NAME;
  std::string file;
};

struct Program {
  std::string_view name;
  std::function<LoadTimes()> load;
  std::vector<ChildRun> runs;
};

std::vector<double> Collect(const Program& program,
                            const std::function<double(const ChildRun&)>& figure) {
  std::vector<double> values;
  for (const ChildRun& run : program.runs) values.push_back(figure(run));
  return values;
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void PrintRow(std::string_view label, const std::vector<double>& values, int decimals) {
  const auto [least, most] = std::minmax_element(values.begin(), values.end());
  fmt::print("  {:<18}{:>11.{}f}{:>11.{}f}{:>11.{}f}\n", label, *least, decimals, Median(values),
             decimals, *most, decimals);
}

void PrintProgram(const Program& program, double fileBytes) {
  const auto row = [&](std::string_view label, int decimals, auto figure) {
    PrintRow(label, Collect(program, figure), decimals);
  };
  fmt::print("\n{:<20}{:>11}{:>11}{:>11}\n", program.name, "min", "median", "max");
  row("load, ms", 1, [](const ChildRun& run) { return run.times.loadSeconds * 1e3; });
  row("release, ms", 1, [](const ChildRun& run) { return run.times.releaseSeconds * 1e3; });
  row("user, ms", 1, [](const ChildRun& run) { return run.userSeconds * 1e3; });
  row("system, ms", 1, [](const ChildRun& run) { return run.systemSeconds * 1e3; });
  row("page faults", 0, [](const ChildRun& run) { return static_cast<double>(run.pageFaults); });
  row("peak memory, MB", 1,
      [](const ChildRun& run) { return static_cast<double>(run.peakBytes) * 1e-6; });
  row("load, ns a byte", 3,
      [=](const ChildRun& run) { return run.times.loadSeconds * 1e9 / fileBytes; });
  row("load, MB/s", 0,
      [=](const ChildRun& run) { return fileBytes * 1e-6 / run.times.loadSeconds; });
  row("peak / file size", 2,
      [=](const ChildRun& run) { return static_cast<double>(run.peakBytes) / fileBytes; });
}

double Fastest(const Program& program) {
  const std::vector<double> values =
      Collect(program, [](const ChildRun& run) { return run.times.loadSeconds; });
  return *std::min_element(values.begin(), values.end());
}

void PrintRatios(const Program& ours, const Program& peer) {
  std::vector<double> ratios;
  fmt::print("\nload time of {} / {}, round by round:", peer.name, ours.name);
  for (std::size_t i = 0; i < ours.runs.size(); ++i) {
    ratios.push_back(peer.runs[i].times.loadSeconds / ours.runs[i].times.loadSeconds);
    fmt::print("{}{:.2f}", i % 10 == 0 ? "\n  " : " ", ratios.back());
  }
  const auto [least, most] = std::minmax_element(ratios.begin(), ratios.end());
  const double fastest = Fastest(peer) / Fastest(ours);
  fmt::print("\n  min {:.2f}, median {:.2f}, max {:.2f}; of the fastest runs {:.2f}\n", *least,
             Median(ratios), *most, fastest);
}

// Figures of a load that found something else are worth nothing.
void CheckSongCount(const Program& program, std::int64_t expected) {
  const std::int64_t found = program.runs.back().times.songCount;
  if (found == expected) return;
  throw std::runtime_error(
      fmt::format("{} found {} songs, {} were expected", program.name, found, expected));
}

void RunRounds(std::vector<Program>& programs, std::uint32_t rounds, std::uint64_t warmBytes) {
  Random random(1);
  std::vector<std::size_t> order(programs.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::int64_t songCount = -1;
  for (std::uint32_t round = 0; round < rounds; ++round) {
    for (std::size_t i = order.size(); i > 1; --i) {
      std::swap(order[i - 1], order[random.Below(static_cast<std::uint32_t>(i))]);
    }
    for (const std::size_t which : order) {
      Program& program = programs[which];
      WarmMemory(warmBytes);
      program.runs.push_back(RunInChild(program.load));
      if (songCount < 0) songCount = program.runs.back().times.songCount;
      CheckSongCount(program, songCount);
    }
  }
}

void Measure(const Options& options) {
  const std::uint64_t fileBytes = std::filesystem::file_size(options.file);
  const TemporaryHome home(options.file);
  std::vector<Program> programs;
  programs.push_back(
      {"libTavrel", [&] { return LoadWithTavrel(options.library, home.Path()); }, {}});
  if (options.peer && HasPugixml()) {
    programs.push_back({"pugixml", [&] { return LoadWithPugixml(options.file); }, {}});
  } else if (options.peer) {
    fmt::print(stderr, "load_library: built without pugixml, measuring libTavrel alone\n");
  }
  // The first run brings the file into memory; it is not counted.
  RunInChild(programs.front().load);
  RunRounds(programs, options.rounds, fileBytes * 7 / 2);

  fmt::print("{}: {:.1f} MB, {} songs, {} rounds\n", options.file,
             static_cast<double>(fileBytes) * 1e-6, programs.front().runs.front().times.songCount,
             options.rounds);
  for (const Program& program : programs) PrintProgram(program, static_cast<double>(fileBytes));
  if (programs.size() > 1) PrintRatios(programs[0], programs[1]);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("Measures loading and unloading a library file.", "load_library");
  app.footer(footer);
  app.add_option("--rounds", options.rounds, "Measured runs of each program")
      ->check(CLI::Range(1, 10000))
      ->capture_default_str();
  app.add_flag("--peer", options.peer, "Measure pugixml beside the library, in random order");
  app.add_option("--library", options.library, "Shared library to load")->capture_default_str();
  app.add_option("FILE", options.file, "Library file")->required()->check(CLI::ExistingFile);
  try {
    app.parse(argc, argv);
    Measure(options);
    return 0;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  } catch (const std::exception& error) {
    fmt::print(stderr, "load_library: {}\n", error.what());
    return 1;
  }
}
