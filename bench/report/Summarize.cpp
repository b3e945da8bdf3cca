// summarize: puts the reports of all benchmarks together, and ends with a line for each target.
#include "bench/report/Arguments.h"
#include "bench/report/Summary.h"

using namespace tavrel::bench;

int main(int argc, char** argv) {
  SummaryOptions options;
  Arguments arguments(
      "summarize",
      "Puts the JSON reports of the benchmarks together. Ends with 1 if a target is missed.");
  arguments.Text("--commit", options.commit, "What was measured");
  arguments.Require();
  arguments.Text("--json", options.jsonFile, "File to write");
  arguments.Require();
  arguments.Files("REPORT", options.reports, "Reports");
  return arguments.Run(argc, argv, [&] { Summarize(options); });
}
