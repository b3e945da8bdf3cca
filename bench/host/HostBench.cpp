#include "bench/host/HostBench.h"

#include <stdlib.h>

#include <filesystem>

#include "bench/support/ChildRun.h"

namespace tavrel::bench {

HostBench::HostBench(const HostOptions& options)
    : options_(options), home_(options.file), fileSize_(std::filesystem::file_size(options.file)) {
  setenv("HOME", home_.path().c_str(), 1);
  for (const char* name : {"COLUMNS", "TAVREL_LIBRARY"}) unsetenv(name);
}

ProgramLine HostBench::Tavrel(ProgramLine arguments) const {
  arguments.insert(arguments.begin(), {TAVREL_HOST_FILE, "-l", options_.file});
  return arguments;
}

double HostBench::Run(const ProgramLine& line, const std::string& output) const {
  constexpr std::uint64_t kLoadSize = 6;  // of a file, in memory
  WarmMemory(kLoadSize * fileSize_);
  return SecondsOfProgram(line, Path(output));
}

double HostBench::RunBareLoad() const {
  return Run({TAVREL_BARE_LOAD_FILE, TAVREL_LIBRARY_FILE}, "none");
}

Series Sum(const Series& one, const Series& other) {
  Series sum;
  for (std::size_t round = 0; round < one.size(); ++round) sum.Add(one[round] + other[round]);
  return sum;
}

}  // namespace tavrel::bench
