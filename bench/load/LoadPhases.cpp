// load_phases: where the time of a load goes.
#include <fmt/format.h>
#include <stdlib.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "agent/Implementations.h"
#include "bench/ChildRun.h"
#include "bench/TemporaryHome.h"
#include "bench/report/Machine.h"
#include "bench/report/Program.h"
#include "bench/report/Report.h"
#include "platform/Files.h"
#include "platform/Memory.h"
#include "xml/DocumentPass.h"
#include "xml/TBXML.h"
#include "xml/TagIndex.h"

namespace {

using namespace tavrel::bench;
namespace platform = tavrel::platform;

constexpr char footer[] =
    "Every run has a process of its own, and memory is warmed up before it. The parts are called "
    "one\n"
    "after the other, as a load calls them; a whole load stands beside them in every round.";

struct Options {
  CommonOptions common{15, {}};
  std::string file;
};

struct Parts {
  double read;
  double pass;
  double tracks;
  double playlists;
  std::int32_t trackCount;

  [[nodiscard]] double Tables() const { return tracks + playlists; }
  [[nodiscard]] double Sum() const { return read + pass + Tables(); }
};

struct Whole {
  double load;
  double release;
  std::int32_t trackCount;
};

template <class Work>
double SecondsOf(const Work& work) {
  const double start = SecondsNow();
  work();
  return SecondsNow() - start;
}

// The global record, as a load makes it. Everything here is left to the end of the process.
void MakeGlobalRecord() {
  auto* state =
      static_cast<tavrel::PrivateState*>(platform::AllocateZeroed(sizeof(tavrel::PrivateState)));
  if (state == nullptr) throw std::bad_alloc();
  g_pGlobal = &state->shared;
  g_pGlobal->pool = &state->pool;
}

Parts RunParts(const std::string& file) {
  MakeGlobalRecord();
  Parts parts{};
  platform::FileText text;
  parts.read = SecondsOf([&] { text = platform::ReadFileText(file.c_str()); });
  if (text.block.address == nullptr) throw std::runtime_error("the library cannot read the file");

  // A document without a text of its own: the pass asks for nothing but its records.
  TBXML* document = TBXML::alloc().release();
  if (document == nullptr) throw std::bad_alloc();
  parts.pass = SecondsOf([&] {
    DocumentPass(*document, text.block.address, text.block.address + text.lengthToZero)
        .RunIndexed(tavrel::xml::BestInstructionSet());
  });
  g_pGlobal->document = document;
  parts.tracks = SecondsOf([] { CreateTrackArray(); });
  parts.playlists = SecondsOf([] { CreatePlaylistArray(); });
  parts.trackCount = g_pGlobal->trackCount;
  return parts;
}

Whole RunWhole(const std::string& file) {
  const TemporaryHome home(file);
  setenv("HOME", home.Path().c_str(), 1);
  Whole whole{};
  whole.load = SecondsOf([] { AgentInitializerImp(); });
  if (g_pGlobal == nullptr) throw std::bad_alloc();
  whole.trackCount = g_pGlobal->trackCount;
  whole.release = SecondsOf([] { AgentFinalizerImp(); });
  return whole;
}

struct Rounds {
  std::vector<Parts> parts;
  std::vector<Whole> wholes;
};

// The order changes from round to round.
Rounds RunRounds(const Options& options) {
  const std::uint64_t warmBytes = std::filesystem::file_size(options.file) * 8;
  Rounds rounds;
  for (std::uint32_t i = 0; i < 2 * options.common.rounds; ++i) {
    WarmMemory(warmBytes);
    if (i % 4 == 0 || i % 4 == 3) {
      rounds.parts.push_back(RunInChild([&] { return RunParts(options.file); }));
    } else {
      rounds.wholes.push_back(RunInChild([&] { return RunWhole(options.file); }));
    }
  }
  const std::int32_t count = rounds.wholes.front().trackCount;
  if (count == 0 || count != rounds.parts.front().trackCount) {
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

void AddFigures(const Rounds& rounds, double fileBytes, Report& report) {
  const auto row = [&](const char* label, const Series& seconds) {
    report.Seconds(label, seconds);
    report.Figure("  a byte", "ns", seconds.Times(1e9 / fileBytes));
  };
  const Series sum = Collect(rounds.parts, [](const Parts& each) { return each.Sum(); });
  const Series whole = Collect(rounds.wholes, [](const Whole& each) { return each.load; });
  report.Section("Parts of a load");
  row("reading and checking", Collect(rounds.parts, [](const Parts& each) { return each.read; }));
  row("pass", Collect(rounds.parts, [](const Parts& each) { return each.pass; }));
  row("track table", Collect(rounds.parts, [](const Parts& each) { return each.tracks; }));
  row("playlist table", Collect(rounds.parts, [](const Parts& each) { return each.playlists; }));
  row("all of them", sum);
  report.Section("Whole load");
  row("load", whole);
  row("release", Collect(rounds.wholes, [](const Whole& each) { return each.release; }));
  report.Figure("sum of the parts / load", "x", sum.Over(whole));
}

void AddTargets(const Rounds& rounds, Report& report) {
  const Series tables =
      Collect(rounds.parts, [](const Parts& each) { return each.Tables() / each.Sum(); });
  const Series release =
      Collect(rounds.wholes, [](const Whole& each) { return each.release / each.load; });
  report.Add({7, "tables / load", tables, Bound::kAtMost, 0.15, 0.08});
  report.Add({7, "release / load", release, Bound::kAtMost, 0.04, 0.02});
}

const char* NameOf(tavrel::xml::InstructionSet set) {
  switch (set) {
    case tavrel::xml::InstructionSet::kPlain:
      return "plain";
    case tavrel::xml::InstructionSet::kBaseline:
      return "baseline";
    case tavrel::xml::InstructionSet::kAvx2:
      return "AVX2";
    case tavrel::xml::InstructionSet::kAvx512:
      return "AVX-512";
  }
  return "";
}

void Measure(const Options& options) {
  Report report("load_phases");
  AddMachineFacts(report);
  report.Fact("instruction set", NameOf(tavrel::xml::BestInstructionSet()));
  const auto fileBytes = static_cast<double>(std::filesystem::file_size(options.file));
  const Rounds rounds = RunRounds(options);
  report.Fact("input",
              fmt::format("{:.0f} bytes, {} tracks", fileBytes, rounds.wholes.front().trackCount));
  AddFigures(rounds, fileBytes, report);
  AddTargets(rounds, report);
  report.Finish(options.common.jsonFile);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("Measures the parts of a load.", "load_phases");
  app.footer(footer);
  AddCommonOptions(app, options.common);
  app.add_option("FILE", options.file, "Library file")->required()->check(CLI::ExistingFile);
  return RunProgram(app, argc, argv, [&] { Measure(options); });
}
