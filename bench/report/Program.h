// The frame of a benchmark program: its arguments, its errors and its exit code.
#pragma once

#include <CLI/App.hpp>
#include <cstdint>
#include <functional>
#include <string>

namespace tavrel::bench {

struct CommonOptions {
  std::uint32_t rounds;
  std::string jsonFile;
};

// Adds --rounds and --json; `options` holds the default number of rounds.
void AddCommonOptions(CLI::App& app, CommonOptions& options);

// Reads the arguments and calls `work`. Result: the exit code; 2 for bad arguments, 1 when `work`
// ended with an exception, whose message goes to standard error.
int RunProgram(CLI::App& app, int argc, char** argv, const std::function<void()>& work);

}  // namespace tavrel::bench
