// pass: measures the pass alone, with text and records resident, beside other parsers.
#include <fmt/format.h>
#include <malloc.h>

#include <CLI/CLI.hpp>
#include <cstring>
#include <fstream>
#include <iterator>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bench/pass/Passes.h"
#include "bench/pass/Peers.h"
#include "bench/pass/ResidentMemory.h"
#include "bench/report/Machine.h"
#include "bench/report/Program.h"
#include "bench/report/Report.h"
#include "bench/support/Random.h"
#include "system/Memory.h"

namespace {

using namespace tavrel::bench;

constexpr char footer[] =
    "The text is copied to memory that is there already before each run, and records come from\n"
    "memory that is there too: measured is what a parser does, not what the system does for it.\n"
    "All of them take turns in random order, each ratio is one of a round, and times are "
    "processor\n"
    "times.\n"
    "\n"
    "Example:\n"
    "  generate_library --tracks 100000 -o library.xml && pass library.xml";

struct Timed {
  std::string name;
  std::function<double(char*, std::size_t)> run;
  Series seconds{};
};

std::string ContentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string contents((std::istreambuf_iterator<char>(file)), {});
  if (contents.empty()) throw std::runtime_error("the file is empty or cannot be read");
  contents.resize(std::strlen(contents.c_str()));  // where the text ends for the pass
  return contents;
}

// The text again and again, in the same place.
class ResidentText {
 public:
  explicit ResidentText(const std::string& text)
      : text_(text), block_(tavrel::system::AllocateBlock(text.size() + 1)) {
    if (block_.address == nullptr) throw std::bad_alloc();
  }
  ~ResidentText() { tavrel::system::ReleaseBlock(block_); }
  ResidentText(const ResidentText&) = delete;
  ResidentText& operator=(const ResidentText&) = delete;

  [[nodiscard]] char* Fresh() const {
    ZeroReleasedBlocks();  // before the copy, so that all find the same in the caches
    std::memcpy(block_.address, text_.c_str(), text_.size() + 1);
    return block_.address;
  }
  [[nodiscard]] std::size_t size() const { return text_.size(); }

 private:
  const std::string& text_;
  tavrel::system::ZeroedBlock block_;
};

void Check(const std::vector<Pass>& passes, const ResidentText& text, Report& report) {
  CheckRandomTexts(passes);
  const auto expected = passes.front().summary(text.Fresh(), text.size());
  for (const Pass& pass : passes) {
    if (pass.summary(text.Fresh(), text.size()) != expected) {
      throw std::runtime_error("another tree: " + pass.name);
    }
  }
  report.Fact("bytes", std::to_string(text.size()));
  report.Fact("elements", std::to_string(expected.elements));
  report.Fact("attributes", std::to_string(expected.attributes));
  report.Fact("tree hash, equal for all passes", fmt::format("{:016x}", expected.hash));
}

void RunRounds(std::vector<Timed>& programs, const ResidentText& text, std::uint32_t rounds) {
  Random random(1);
  std::vector<Timed*> order;
  for (Timed& program : programs) order.push_back(&program);
  for (std::uint32_t round = 0; round <= rounds; ++round) {
    for (std::size_t i = order.size(); i > 1; --i) {
      std::swap(order[i - 1], order[random.Below(static_cast<std::uint32_t>(i))]);
    }
    for (Timed* program : order) {
      const double seconds = program->run(text.Fresh(), text.size());
      if (round > 0) program->seconds.Add(seconds);  // the first one makes memory resident
    }
  }
}

const Timed* Named(const std::vector<Timed>& programs, std::string_view name) {
  for (const Timed& program : programs) {
    if (program.name == name) return &program;
  }
  return nullptr;
}

void AddTargets(const std::vector<Timed>& programs, Report& report) {
  struct Marks {
    int number;
    std::string peer;
    double pass;
    double moonshotAvx2;
    double moonshotAvx512;
  };
  for (const Marks& marks :
       {Marks{3, Rapidxml().name, 1.6, 2.0, 2.5}, Marks{4, Pugixml().name, 1.8, 2.3, 3.0}}) {
    const Timed* peer = Named(programs, marks.peer);
    for (const auto& [name, moonshot] :
         {std::pair(kAvx2Name, marks.moonshotAvx2), std::pair(kAvx512Name, marks.moonshotAvx512)}) {
      const Timed* ours = Named(programs, name);
      if (peer == nullptr || ours == nullptr) continue;
      report.Add({marks.number, fmt::format("{} / {}", marks.peer, name),
                  peer->seconds.Over(ours->seconds), Bound::kAtLeast, marks.pass, moonshot});
    }
  }
}

void Measure(const std::string& file, const CommonOptions& options) {
  // Freed chunks of the literal form stay in the process.
  mallopt(M_TRIM_THRESHOLD, INT32_MAX);
  mallopt(M_MMAP_THRESHOLD, INT32_MAX);
  const std::string contents = ContentsOf(file);
  const ResidentText text(contents);
  ReservePeerMemory(16 * contents.size() + (std::size_t{64} << 20));

  Report report("pass");
  AddMachineFacts(report);
  std::vector<Timed> programs;
  const std::vector<Pass> passes = AllPasses();
  for (const Pass& pass : passes) programs.push_back({pass.name, pass.run});
  for (const Peer& peer : {Rapidxml(), Pugixml()}) {
    report.Fact(peer.name, peer.version);
    if (peer.run != nullptr) programs.push_back({peer.name, peer.run});
  }
  Check(passes, text, report);
  RunRounds(programs, text, options.rounds);

  report.Section("the pass alone, everything resident");
  for (const Timed& program : programs) report.Seconds(program.name, program.seconds);
  const Timed& literal = programs.front();
  report.Section("how many times as fast as the literal form");
  for (const Timed& program : programs) {
    report.Figure(program.name, "x", literal.seconds.Over(program.seconds));
  }
  AddTargets(programs, report);
  report.Finish(options.jsonFile);
}

}  // namespace

int main(int argc, char** argv) {
  CommonOptions options{15, ""};
  std::string file;
  CLI::App app("Measures the pass alone beside other parsers.", "pass");
  app.footer(footer);
  AddCommonOptions(app, options);
  app.add_option("FILE", file, "Library file")->required()->check(CLI::ExistingFile);
  return RunProgram(app, argc, argv, [&] { Measure(file, options); });
}
