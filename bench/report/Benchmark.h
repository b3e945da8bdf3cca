// The frame of every program that measures: its arguments, its report, its errors and its exit code.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "bench/report/Arguments.h"
#include "bench/report/Report.h"

namespace tavrel::bench {

class Benchmark {
 public:
  // A program with the options --rounds and --json. rounds: how many, unless the option says otherwise.
  Benchmark(const std::string& name, const std::string& purpose, std::uint32_t rounds);

  // What --help says last.
  void Explain(const std::string& text) { arguments_.Explain(text); }
  // The arguments without a name are files, which must be there.
  void Take(std::string& file) { arguments_.File("FILE", file, "Library file"); }
  void Take(std::vector<std::string>& files) { arguments_.Files("FILE", files, "Library files"); }
  // For options of its own.
  [[nodiscard]] Arguments& arguments() { return arguments_; }

  [[nodiscard]] std::uint32_t rounds() const { return rounds_; }

  // Reads the arguments and calls `measure` with a report that begins with what is known of the
  // machine; prints its targets and writes its file. Result: the exit code, as of Arguments::Run.
  int Run(int argc, char** argv, const std::function<void(Report&)>& measure);

 private:
  Arguments arguments_;
  std::uint32_t rounds_;
  std::string jsonFile_;
};

}  // namespace tavrel::bench
