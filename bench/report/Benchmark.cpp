#include "bench/report/Benchmark.h"

#include <CLI/CLI.hpp>

#include "bench/report/Machine.h"
#include "bench/report/RunProgram.h"

namespace tavrel::bench {

Benchmark::Benchmark(const std::string& name, const std::string& purpose, std::uint32_t rounds)
    : app_(std::make_unique<CLI::App>(purpose, name)), rounds_(rounds) {
  app_->add_option("--rounds", rounds_, "Measured rounds")
      ->check(CLI::Range(1, 10000))
      ->capture_default_str();
  app_->add_option("--json", jsonFile_, "File for all figures, as JSON");
}

Benchmark::~Benchmark() = default;

void Benchmark::Explain(const std::string& text) {
  app_->footer(text);
}

void Benchmark::Take(std::string& file) {
  app_->add_option("FILE", file, "Library file")->required()->check(CLI::ExistingFile);
}

void Benchmark::Take(std::vector<std::string>& files) {
  app_->add_option("FILE", files, "Library files")->required()->check(CLI::ExistingFile);
}

int Benchmark::Run(int argc, char** argv, const std::function<void(Report&)>& measure) {
  return RunProgram(*app_, argc, argv, [&] {
    Report report(app_->get_name());
    AddMachineFacts(report);
    measure(report);
    report.Finish(jsonFile_);
  });
}

}  // namespace tavrel::bench
