#include "bench/report/RunProgram.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

namespace tavrel::bench {

int RunProgram(CLI::App& app, int argc, char** argv, const std::function<void()>& work) {
  try {
    app.parse(argc, argv);
    work();
    return 0;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  } catch (const std::exception& error) {
    fmt::print(stderr, "{}: {}\n", app.get_name(), error.what());
    return 1;
  }
}

}  // namespace tavrel::bench
