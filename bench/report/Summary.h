// The reports of several benchmarks, put together.
#pragma once

#include <string>
#include <vector>

namespace tavrel::bench {

struct SummaryOptions {
  std::string commit;
  std::string jsonFile;
  std::vector<std::string> reports;
};

// Writes all of them to the file, and prints a line for each target. Throws std::runtime_error when a
// report cannot be read, the file not written, or when a target was missed.
void Summarize(const SummaryOptions& options);

}  // namespace tavrel::bench
