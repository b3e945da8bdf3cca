#include "bench/report/Program.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

namespace tavrel::bench {

void AddCommonOptions(CLI::App& app, CommonOptions& options) {
  app.add_option("--rounds", options.rounds, "Measured rounds")
      ->check(CLI::Range(1, 10000))
      ->capture_default_str();
  app.add_option("--json", options.jsonFile, "File for all figures, as JSON");
}

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
