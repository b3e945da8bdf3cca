#include "bench/report/Summary.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

#include "bench/report/Target.h"

namespace tavrel::bench {
namespace {

using ReportJson = nlohmann::ordered_json;

ReportJson ReadReport(const std::string& path) {
  std::ifstream file(path);
  ReportJson report = ReportJson::parse(file, nullptr, false);
  if (report.is_discarded()) throw std::runtime_error("\"" + path + "\" is not a report");
  return report;
}

Target TargetOf(const ReportJson& json) {
  const bool isLeast = json.at("bound") == "at least";
  return {json.at("number"),
          json.at("name"),
          Series(json.at("ratios").get<std::vector<double>>()),
          isLeast ? Bound::kAtLeast : Bound::kAtMost,
          json.at("pass"),
          json.at("moonshot")};
}

// What several programs say alike is printed once.
void PrintFacts(const ReportJson& reports) {
  std::set<std::string> printed;
  for (const ReportJson& report : reports) {
    for (const auto& [name, value] : report.at("facts").items()) {
      if (name == "load average") continue;  // of its own time
      const std::string line = fmt::format("{}: {}", name, value.get<std::string>());
      if (printed.insert(line).second) fmt::print("{}\n", line);
    }
  }
  fmt::print("load average:");
  for (const ReportJson& report : reports) {
    fmt::print(" {}", report.at("facts").value("load average", "unknown"));
  }
  fmt::print("\n\n");
}

std::vector<Target> TargetsOf(const ReportJson& reports) {
  std::vector<Target> targets;
  for (const ReportJson& report : reports) {
    for (const ReportJson& target : report.at("targets")) targets.push_back(TargetOf(target));
  }
  std::stable_sort(targets.begin(), targets.end(),
                   [](const Target& a, const Target& b) { return a.number < b.number; });
  return targets;
}

}  // namespace

void Summarize(const SummaryOptions& options) {
  ReportJson whole = {{"commit", options.commit}, {"reports", ReportJson::array()}};
  for (const std::string& path : options.reports) whole["reports"].push_back(ReadReport(path));
  std::ofstream file(options.jsonFile);
  file << whole.dump(1) << '\n';
  file.close();
  if (!file) throw std::runtime_error("cannot write \"" + options.jsonFile + "\"");

  fmt::print("commit: {}\n", options.commit);
  PrintFacts(whole["reports"]);
  const std::vector<Target> targets = TargetsOf(whole["reports"]);
  const auto count = [&](auto condition) {
    return std::count_if(targets.begin(), targets.end(), condition);
  };
  for (const Target& target : targets) Print(target);
  const auto failed = count([](const Target& t) { return t.Judge() == Verdict::kFail; });
  fmt::print("\n{} targets: {} at their moonshot, {} missed, {} too noisy to tell.\n",
             targets.size(), count([](const Target& t) { return t.IsMoonshot(); }), failed,
             count([](const Target& t) { return t.Judge() == Verdict::kNoisy; }));
  fmt::print("All figures: {}\n", options.jsonFile);
  if (failed > 0) throw std::runtime_error("targets were missed");
}

}  // namespace tavrel::bench
