#include "bench/report/Benchmark.h"

#include "bench/report/Machine.h"

namespace tavrel::bench {

Benchmark::Benchmark(const std::string& name, const std::string& purpose, std::uint32_t rounds)
    : arguments_(name, purpose), rounds_(rounds) {
  arguments_.Number("--rounds", rounds_, "Measured rounds", 1, 10000);
  arguments_.Text("--json", jsonFile_, "File for all figures, as JSON");
}

int Benchmark::Run(int argc, char** argv, const std::function<void(Report&)>& measure) {
  return arguments_.Run(argc, argv, [&] {
    Report report(arguments_.program());
    AddMachineFacts(report);
    measure(report);
    report.Finish(jsonFile_);
  });
}

}  // namespace tavrel::bench
