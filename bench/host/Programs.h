// Programs that are run one after the other, each with its output in a file.
#pragma once

#include <string>
#include <vector>

namespace tavrel::bench {

// A program, found in $PATH unless its name has a '/', and its arguments.
using ProgramLine = std::vector<std::string>;

// The time that it had of the processor, in seconds, start and end included. Standard output goes into the file.
// Throws std::runtime_error when it cannot be run, or ends with anything but 0.
double SecondsOfProgram(const ProgramLine& line, const std::string& outputFile);

// Whether "PROGRAM --version" can be run.
[[nodiscard]] bool HasProgram(const std::string& program);

}  // namespace tavrel::bench
