// host: measures commands of tavrel on a library file, beside what they cannot do without and beside Python's
// plistlib and jq doing the same.
#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/host/Answers.h"
#include "bench/host/HostBench.h"
#include "bench/host/Leaving.h"
#include "bench/host/Programs.h"
#include "bench/report/Benchmark.h"
#include "bench/report/Turns.h"
#include "bench/support/WholeFile.h"

namespace {

using namespace tavrel::bench;

constexpr char kFooter[] =
    "A command is set beside a bare load (a program that opens the library and closes it) plus "
    "cat\n"
    "of the command's output, all in turns; each ratio is one of a round. plistlib reads the file\n"
    "and does the same in Python; jq reads our own JSON. Their answers are compared with ours.\n"
    "Times are those of the processor, so that other work on the machine counts for nobody.\n"
    "\n"
    "Example:\n"
    "  generate_library --tracks 100000 -o library.xml && host library.xml";

constexpr char kFirstWord[] = "love";
constexpr char kSecondWord[] = "night";

struct Command {
  std::string label;
  std::string task;  // what the peer's script calls it
  ProgramLine arguments;
  std::string filter;  // for jq; empty: nothing to compare with
};

const std::vector<Command>& Commands() {
  static const std::vector<Command> commands{
      {"overview", "overview", {}, ""},
      {"songs --format csv --fields all",
       "songs",
       {"songs", "--format", "csv", "--fields", "all"},
       "(.[0] | keys_unsorted) as $keys | $keys, (.[] | [.[$keys[]]]) | @csv"},
      {"search, two words",
       "search",
       {"search", kFirstWord, kSecondWord},
       fmt::format(".[] | select([.name, .artist, .albumArtist, .album, .composer | strings | "
                   "ascii_downcase] "
                   "| any(contains(\"{}\")) and any(contains(\"{}\"))) | .name",
                   kFirstWord, kSecondWord)},
      {"stats --by year",
       "stats",
       {"stats", "--by", "year"},
       "group_by(.year) | map({year: .[0].year, songs: length, seconds: (map(.seconds) | add), "
       "plays: (map(.plays) | add)})"},
      {"playlists", "playlists", {"playlists"}, ""}};
  return commands;
}

// ---- Beside what no command can do without ------------------------------------------------------

void MeasureFloors(const HostBench& bench, std::uint32_t rounds, Report& report) {
  std::vector<Step> steps = {{"bare load", [&] { return bench.RunBareLoad(); }}};
  for (const Command& command : Commands()) {
    const std::string output = command.task + ".out";
    steps.push_back({command.label, [&bench, &command, output] {
                       return bench.Run(bench.Tavrel(command.arguments), output);
                     }});
    steps.push_back({"  cat of its output", [&bench, output] {
                       return SecondsOfProgram({"cat", bench.Path(output)}, bench.Path("copy"));
                     }});
  }
  WarmUp(steps);
  RunInTurns(steps, rounds);
  report.Section("Commands, and what they cannot do without");
  for (const Step& step : steps) report.Seconds(step.name, step.seconds);
  for (std::size_t i = 0; i < Commands().size(); ++i) {
    const Step& ours = steps[1 + 2 * i];
    const Series floor = Sum(steps[0].seconds, steps[2 + 2 * i].seconds);
    report.Add(
        {21, ours.name + ": ours / load and cat", ours.seconds.Over(floor), Bound::kAtMost, 3, 2});
  }
}

// ---- Beside others ------------------------------------------------------------------------------

// A pair for each field, "name=key", as the first line of our CSV and the document of the fields say.
ProgramLine PythonLine(const HostOptions& options, const HostBench& bench) {
  return {"python3",  TAVREL_PEER_SCRIPT, options.file, bench.Path(""), TAVREL_FIELDS_DOCUMENT,
          kFirstWord, kSecondWord};
}

using Times = std::map<std::string, double>;  // by the name of the task

Times RunPython(const HostOptions& options, const HostBench& bench) {
  (void)bench.Run(PythonLine(options, bench), "python.out");
  std::istringstream lines(ContentsOf(bench.Path("python.out")));
  Times times;
  std::string task;
  for (double seconds = 0; lines >> task >> seconds;) times[task] = seconds;
  if (times.size() != Commands().size())
    throw std::runtime_error("the peer's script did not answer");
  return times;
}

void CompareAnswers(const HostBench& bench) {
  for (const Command& command : Commands()) {
    const bool isJson = command.task != "songs" && command.task != "search";
    ProgramLine arguments = command.arguments;
    if (isJson) arguments.push_back("--json");
    (void)bench.Run(bench.Tavrel(arguments), "ours");
    Compare(command.task, ContentsOf(bench.Path("ours")), ContentsOf(bench.Path(command.task)));
  }
}

void MeasurePython(const HostOptions& options, const HostBench& bench, std::uint32_t rounds,
                   Report& report) {
  std::vector<Series> ours(Commands().size());
  std::vector<Series> theirs(Commands().size());
  for (std::uint32_t round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < Commands().size(); ++i) {
      ours[i].Add(bench.Run(bench.Tavrel(Commands()[i].arguments), "ours"));
    }
    const Times times = RunPython(options, bench);
    for (std::size_t i = 0; i < Commands().size(); ++i) theirs[i].Add(times.at(Commands()[i].task));
  }
  CompareAnswers(bench);
  report.Section("Python's plistlib doing the same");
  for (std::size_t i = 0; i < Commands().size(); ++i) {
    report.Seconds(Commands()[i].label, theirs[i]);
    report.Add({22, Commands()[i].label + ": Python plistlib / ours", theirs[i].Over(ours[i]),
                Bound::kAtLeast, 30, 60});
  }
}

void MeasureJq(const HostBench& bench, std::uint32_t rounds, Report& report) {
  (void)bench.Run(bench.Tavrel({"songs", "--json"}), "songs.json");
  std::vector<Step> steps;
  for (const Command& command : Commands()) {
    if (command.filter.empty()) continue;
    steps.push_back(
        {command.label, [&] { return bench.Run(bench.Tavrel(command.arguments), "ours"); }});
    steps.push_back(
        {"  jq, from our JSON", [&] {
           return bench.Run({"jq", "-r", command.filter, bench.Path("songs.json")}, "jq.out");
         }});
  }
  RunInTurns(steps, rounds);
  report.Section("jq doing the same, from \"songs --json\"");
  for (std::size_t i = 0; i < steps.size(); i += 2) {
    report.Seconds(steps[i].name, steps[i].seconds);
    report.Seconds(steps[i + 1].name, steps[i + 1].seconds);
    report.Figure("  time / ours", "", steps[i + 1].seconds.Over(steps[i].seconds));
  }
}

void Measure(const HostOptions& options, std::uint32_t rounds, Report& report) {
  const HostBench bench(options);
  MeasureFloors(bench, rounds, report);
  const std::uint32_t peerRounds = std::min(rounds, options.peerRounds);
  if (HasProgram("python3")) MeasurePython(options, bench, peerRounds, report);
  if (HasProgram("jq")) MeasureJq(bench, peerRounds, report);
  MeasureLeaving(bench, rounds, peerRounds, report);
}

}  // namespace

int main(int argc, char** argv) {
  HostOptions options;
  Benchmark benchmark("host", "Measures commands of tavrel.", 9);
  benchmark.Explain(kFooter);
  benchmark.Take(options.file);
  benchmark.arguments().Number("--peer-rounds", options.peerRounds, "Rounds of what takes longer",
                               1, 100);
  return benchmark.Run(argc, argv,
                       [&](Report& report) { Measure(options, benchmark.rounds(), report); });
}
