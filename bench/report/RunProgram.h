// Reading a program's arguments, and its way out.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace tavrel::bench {

// Reads the arguments and calls `work`. Result: the exit code; 2 for bad arguments, 1 when `work`
// ended with an exception, whose message goes to standard error.
int RunProgram(CLI::App& app, int argc, char** argv, const std::function<void()>& work);

}  // namespace tavrel::bench
