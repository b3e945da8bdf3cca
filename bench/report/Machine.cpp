#include "bench/report/Machine.h"

#include <fmt/format.h>
#include <stdlib.h>

#include <fstream>

namespace tavrel::bench {
namespace {

std::string FirstLineOf(const char* file) {
  std::ifstream stream(file);
  std::string line;
  std::getline(stream, line);
  return line.empty() ? "unknown" : line;
}

std::string LoadAverage() {
  double load = 0;
  return getloadavg(&load, 1) == 1 ? fmt::format("{:.2f}", load) : "unknown";
}

}  // namespace

std::string ProcessorName() {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("model name")) return line.substr(line.find(':') + 2);
  }
  return "unknown";
}

void AddMachineFacts(Report& report) {
  report.Fact("processor", ProcessorName());
  report.Fact("huge pages", FirstLineOf("/sys/kernel/mm/transparent_hugepage/enabled"));
#if defined(__clang__)
  report.Fact("compiler", __VERSION__);
#else
  report.Fact("compiler", "GCC " __VERSION__);
#endif
#if defined(TAVREL_BENCH_IS_NOT_OPTIMIZED)
  report.Fact("figures",
              "of no worth: this build is not optimised (scripts/bench makes one that is)");
#endif
  report.Fact("load average", LoadAverage());
}

}  // namespace tavrel::bench
