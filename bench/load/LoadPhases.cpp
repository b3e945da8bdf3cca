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
#include "bench/report/Machine.h"
#include "bench/report/Program.h"
#include "bench/report/Report.h"
#include "bench/support/ChildRun.h"
#include "bench/support/LinkedHome.h"
#include "system/Files.h"
#include "system/Memory.h"
#include "text/TextFile.h"
#include "xml/StructuralIndex.h"
#include "xml/TBXML.h"

namespace {

using namespace tavrel::bench;
using namespace tavrel;

constexpr char footer[] =
    "Every run has a process of its own, and memory is warmed up before it. The parts are called "
    "one\n"
    "after the other, as a load calls them; a whole load stands beside them in every round, and "
    "so\n"
    "does what no load can do without.";

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
  std::size_t elements;

  [[nodiscard]] double Tables() const { return tracks + playlists; }
  [[nodiscard]] double Sum() const { return read + pass + Tables(); }
};

struct Whole {
  double load;
  double release;
  std::int32_t trackCount;
};

// What no load can do without: the file's bytes and a record for each element, in fresh memory.
struct Floor {
  double read;
  double records;

  [[nodiscard]] double Sum() const { return read + records; }
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
      static_cast<tavrel::PrivateState*>(system::AllocateZeroed(sizeof(tavrel::PrivateState)));
  if (state == nullptr) throw std::bad_alloc();
  g_pGlobal = &state->shared;
  g_pGlobal->pool = &state->pool;
}

std::size_t CountElements(const TBXML& document) {
  const TBXMLFields& fields = document.fields();
  std::size_t count = static_cast<std::size_t>(fields.currentElement) + 1;
  for (const TBXMLElementBuffer* chunk = fields.currentElementBuffer; chunk->previous != nullptr;) {
    chunk = chunk->previous;
    count += kRecordsPerChunk;
  }
  return count;
}

Parts RunParts(const std::string& file) {
  MakeGlobalRecord();
  Parts parts{};
  text::FileText text;
  parts.read = SecondsOf([&] { text = text::ReadFileText(file.c_str()); });
  if (text.block.address == nullptr) throw std::runtime_error("the library cannot read the file");

  TBXML* document = TBXML::alloc().release();
  if (document == nullptr) throw std::bad_alloc();
  document->listElementsOfLevel(4);  // as for every library file
  parts.pass = SecondsOf([&] { document->initWithFileText(text); });
  g_pGlobal->document = document;
  parts.tracks = SecondsOf([] { CreateTrackArray(); });
  parts.playlists = SecondsOf([] { CreatePlaylistArray(); });
  parts.trackCount = g_pGlobal->trackCount;
  parts.elements = CountElements(*document);
  return parts;
}

Whole RunWhole(const std::string& file) {
  const LinkedHome home(file);
  setenv("HOME", home.Path().c_str(), 1);
  Whole whole{};
  whole.load = SecondsOf([] { AgentInitializerImp(); });
  if (g_pGlobal == nullptr) throw std::bad_alloc();
  whole.trackCount = g_pGlobal->trackCount;
  whole.release = SecondsOf([] { AgentFinalizerImp(); });
  return whole;
}

// Everything here is left to the end of the process.
Floor RunFloor(const std::string& path, std::size_t elements) {
  Floor floor{};
  std::size_t size = 0;
  const system::FileDescriptor file = system::OpenRegularFile(path.c_str(), size);
  floor.read = SecondsOf([&] {
    char* text = system::AllocateBlock(size + 1).address;
    if (text == nullptr || system::ReadAt(file.get(), 0, text, size) != size) {
      throw std::runtime_error("the file cannot be read");
    }
  });
  floor.records = SecondsOf([&] {
    auto* records = reinterpret_cast<TBXMLElement*>(
        system::AllocateBlock(elements * sizeof(TBXMLElement)).address);
    if (records == nullptr) throw std::bad_alloc();
    // What a leaf gets.
    char text = 0;
    for (TBXMLElement* record = records; record < records + elements; ++record) {
      record->name = &text;
      record->text = &text;
      record->parentElement = records;
      record->nextSibling = record;
      record->previousSibling = record;
    }
  });
  return floor;
}

struct Rounds {
  std::vector<Parts> parts;
  std::vector<Whole> wholes;
  std::vector<Floor> floors;
};

// The order changes from round to round.
Rounds RunRounds(const Options& options) {
  const std::uint64_t warmBytes = std::filesystem::file_size(options.file) * 8;
  const std::size_t elements = RunInChild([&] { return RunParts(options.file); }).elements;
  Rounds rounds;
  const auto run = [&](std::uint32_t kind) {
    WarmMemory(warmBytes);
    if (kind == 0) rounds.parts.push_back(RunInChild([&] { return RunParts(options.file); }));
    if (kind == 1) rounds.wholes.push_back(RunInChild([&] { return RunWhole(options.file); }));
    if (kind == 2) {
      rounds.floors.push_back(RunInChild([&] { return RunFloor(options.file, elements); }));
    }
  };
  for (std::uint32_t round = 0; round < options.common.rounds; ++round) {
    for (std::uint32_t i = 0; i < 3; ++i) run((round + i) % 3);
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

  const Series floor = Collect(rounds.floors, [](const Floor& each) { return each.Sum(); });
  report.Section("Floor, in fresh huge pages");
  row("read(2)", Collect(rounds.floors, [](const Floor& each) { return each.read; }));
  row("five fields of each record",
      Collect(rounds.floors, [](const Floor& each) { return each.records; }));
  row("both", floor);
  report.Figure("distance to the floor: load / both", "x", whole.Over(floor));
}

void AddTargets(const Rounds& rounds, Report& report) {
  const Series tables =
      Collect(rounds.parts, [](const Parts& each) { return each.Tables() / each.Sum(); });
  const Series release =
      Collect(rounds.wholes, [](const Whole& each) { return each.release / each.load; });
  report.Add({7, "tables / load", tables, Bound::kAtMost, 0.15, 0.08});
  report.Add({7, "release / load", release, Bound::kAtMost, 0.04, 0.02});
}

const char* NameOf(tavrel::system::InstructionSet set) {
  switch (set) {
    case tavrel::system::InstructionSet::kPlain:
      return "plain";
    case tavrel::system::InstructionSet::kBaseline:
      return "baseline";
    case tavrel::system::InstructionSet::kCarryless:
      return "baseline with carry-less multiplication";
    case tavrel::system::InstructionSet::kAvx2:
      return "AVX2";
    case tavrel::system::InstructionSet::kAvx512:
      return "AVX-512";
  }
  return "";
}

void Measure(const Options& options) {
  Report report("load_phases");
  AddMachineFacts(report);
  report.Fact("instruction set", NameOf(tavrel::system::WidestSet()));
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
