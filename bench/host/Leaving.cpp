#include "bench/host/Leaving.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/host/Rewriting.h"
#include "bench/report/Turns.h"
#include "bench/support/Clocks.h"
#include "bench/support/WholeFile.h"

namespace tavrel::bench {
namespace {

namespace fs = std::filesystem;

// What a command writes, and how long that takes at least.
enum class Writes { Output, Lists, Database };

struct Leaving {
  std::string task;
  Writes writes;
  ProgramLine arguments;
};

class LeavingBench {
 public:
  explicit LeavingBench(const HostBench& bench) : bench_(bench), music_(bench.Path("music")) {
    for (const char* format : {"m3u8", "m3u", "xspf", "json", "csv"}) {
      commands_.push_back({std::string("export ") + format,
                           Writes::Lists,
                           {"-q", "export", "--all", "--format", format, "--force", "-o",
                            bench.Path(std::string("lists.") + format)}});
    }
    commands_.push_back({"export sqlite",
                         Writes::Database,
                         {"export", "--format", "sqlite", "--force", "-o", Database()}});
    commands_.push_back({"check", Writes::Output, {"check"}});
    commands_.push_back({"copy --dry-run",
                         Writes::Output,
                         {"copy", "0:0", "--dry-run", "-o", bench.Path("copies")}});
    MakeFiles();
  }

  [[nodiscard]] const std::vector<Leaving>& Commands() const noexcept { return commands_; }
  [[nodiscard]] std::string Database() const { return bench_.Path("library.sqlite"); }
  [[nodiscard]] const std::string& Music() const noexcept { return music_; }

  [[nodiscard]] double Run(const Leaving& command) const {
    ProgramLine arguments = command.arguments;
    arguments.insert(arguments.end(), {"--music", music_});
    return bench_.Run(bench_.Tavrel(arguments), command.task);
  }

  [[nodiscard]] double RunWriting(const Leaving& command) const {
    switch (command.writes) {
      case Writes::Output:
        return SecondsOfProgram({"cat", bench_.Path(command.task)}, bench_.Path("copy"));
      case Writes::Lists:
        fs::remove_all(bench_.Path("copy of lists"));
        return SecondsOfProgram(
            {"cp", "-r", command.arguments.back(), bench_.Path("copy of lists")},
            bench_.Path("none"));
      case Writes::Database:
        break;
    }
    return ProcessorSecondsOf(
        [&] { RewriteDatabase(Database(), bench_.Path("rewritten.sqlite")); });
  }

  [[nodiscard]] double RunStat() const {
    return ProcessorSecondsOf([&] {
      struct stat state;
      for (const std::string& file : files_) {
        if (::stat(file.c_str(), &state) != 0) throw std::runtime_error("missing: " + file);
      }
    });
  }

 private:
  // An empty file for each path that a song is to have below the folder of music.
  void MakeFiles() {
    (void)bench_.Run(bench_.Tavrel({"songs", "--fields", "path", "--format", "tsv", "--paths",
                                    "raw", "--music", music_}),
                     "paths");
    std::istringstream lines(ContentsOf(bench_.Path("paths")));
    for (std::string path; std::getline(lines, path);) {
      if (path.starts_with(music_)) files_.push_back(path);
    }
    for (const std::string& path : files_) {
      fs::create_directories(fs::path(path).parent_path());
      std::ofstream(path).flush();
    }
  }

  const HostBench& bench_;
  std::string music_;
  std::vector<Leaving> commands_;
  std::vector<std::string> files_;
};

void MeasureLeavingFloors(const HostBench& bench, const LeavingBench& leaving, std::uint32_t rounds,
                          Report& report) {
  std::vector<Step> steps{{"bare load", [&] { return bench.RunBareLoad(); }},
                          {"one stat a file", [&] { return leaving.RunStat(); }}};
  for (const Leaving& command : leaving.Commands()) {
    steps.push_back({command.task, [&] { return leaving.Run(command); }});
    steps.push_back({"  writing it alone", [&] { return leaving.RunWriting(command); }});
  }
  WarmUp(steps);
  RunInTurns(steps, rounds);
  report.Section("Leaving with one's music, and what that cannot do without");
  for (const Step& step : steps) report.Seconds(step.name, step.seconds);
  const Series least = Sum(steps[0].seconds, steps[1].seconds);
  for (std::size_t i = 2; i < steps.size(); i += 2) {
    report.Add({23, steps[i].name + ": ours / load, stat and writing",
                steps[i].seconds.Over(Sum(least, steps[i + 1].seconds)), Bound::kAtMost, 3, 2});
  }
}

// Prints "task seconds figure", the figure being one that ours has, too.
void MeasureLeavingInPython(const HostBench& bench, const LeavingBench& leaving,
                            std::uint32_t rounds, Report& report) {
  std::map<std::string, Series> ours;
  std::map<std::string, Series> theirs;
  for (std::uint32_t round = 0; round < rounds; ++round) {
    for (const Leaving& command : leaving.Commands()) ours[command.task].Add(leaving.Run(command));
    (void)bench.Run(
        {"python3", TAVREL_LEAVING_SCRIPT, bench.LibraryFile(), leaving.Music(),
         bench.Path("theirs"), bench.Path("lists.m3u8"), leaving.Database(), bench.Path("check")},
        "leaving.out");
    std::istringstream lines(ContentsOf(bench.Path("leaving.out")));
    std::string task;
    for (double seconds = 0; std::getline(lines, task, ':') && lines >> seconds >> std::ws;) {
      theirs[task].Add(seconds);
    }
  }
  report.Section("Python's plistlib doing the same");
  if (theirs.empty()) throw std::runtime_error("the peer's script did not answer");
  for (const auto& [task, seconds] : theirs) {
    report.Seconds(task, seconds);
    report.Add({24, task + ": Python plistlib / ours", seconds.Over(ours.at(task)), Bound::kAtLeast,
                5, 10});
  }
}

}  // namespace

void MeasureLeaving(const HostBench& bench, std::uint32_t rounds, std::uint32_t peerRounds,
                    Report& report) {
  const LeavingBench leaving(bench);
  // Half of the others' rounds: there is more to do in each.
  MeasureLeavingFloors(bench, leaving, (rounds + 1) / 2, report);
  if (HasProgram("python3")) MeasureLeavingInPython(bench, leaving, peerRounds, report);
}

}  // namespace tavrel::bench
