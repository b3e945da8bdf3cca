#include "bench/report/Summary.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <stdexcept>

#include "bench/report/Json.h"
#include "bench/report/Target.h"

namespace tavrel::bench {
namespace {

JsonOwner ReadReport(const std::string& path) {
  JsonOwner report(json_load_file(path.c_str(), 0, nullptr));
  if (!report) throw std::runtime_error("\"" + path + "\" is not a report");
  return report;
}

// A member that has to be there.
json_t* At(const json_t* object, const char* name) {
  json_t* const value = json_object_get(object, name);
  if (!value) throw std::runtime_error(fmt::format("a report lacks \"{}\"", name));
  return value;
}

const char* TextAt(const json_t* object, const char* name) {
  const char* const text = json_string_value(At(object, name));
  if (!text) throw std::runtime_error(fmt::format("\"{}\" of a report is no text", name));
  return text;
}

double NumberAt(const json_t* object, const char* name) {
  return json_number_value(At(object, name));
}

template <class Use>
void ForEach(const json_t* array, const Use& use) {
  for (std::size_t i = 0; i < json_array_size(array); ++i) use(json_array_get(array, i));
}

Target TargetOf(const json_t* json) {
  std::vector<double> ratios;
  ForEach(At(json, "ratios"),
          [&](const json_t* ratio) { ratios.push_back(json_number_value(ratio)); });
  const bool isLeast = std::string_view(TextAt(json, "bound")) == "at least";
  return {static_cast<int>(NumberAt(json, "number")),
          TextAt(json, "name"),
          Series(std::move(ratios)),
          isLeast ? Bound::kAtLeast : Bound::kAtMost,
          NumberAt(json, "pass"),
          NumberAt(json, "moonshot")};
}

// What several programs say alike is printed once.
void PrintFacts(const json_t* reports) {
  std::set<std::string> printed;
  std::string loads;
  ForEach(reports, [&](const json_t* report) {
    const char* name;
    json_t* value;
    json_object_foreach(At(report, "facts"), name, value) {
      if (name == std::string_view("load average")) {  // of its own time
        loads += fmt::format(" {}", json_string_value(value));
        continue;
      }
      const std::string line = fmt::format("{}: {}", name, json_string_value(value));
      if (printed.insert(line).second) fmt::print("{}\n", line);
    }
  });
  fmt::print("load average:{}\n\n", loads);
}

std::vector<Target> TargetsOf(const json_t* reports) {
  std::vector<Target> targets;
  ForEach(reports, [&](const json_t* report) {
    ForEach(At(report, "targets"),
            [&](const json_t* target) { targets.push_back(TargetOf(target)); });
  });
  std::stable_sort(targets.begin(), targets.end(),
                   [](const Target& a, const Target& b) { return a.number < b.number; });
  return targets;
}

}  // namespace

void Summarize(const SummaryOptions& options) {
  const JsonOwner whole(json_object());
  json_object_set_new(whole.get(), "commit", json_string(options.commit.c_str()));
  json_t* const reports = json_array();
  json_object_set_new(whole.get(), "reports", reports);
  for (const std::string& path : options.reports) {
    json_array_append_new(reports, ReadReport(path).release());
  }
  WriteJson(whole.get(), options.jsonFile);

  fmt::print("commit: {}\n", options.commit);
  PrintFacts(reports);
  const std::vector<Target> targets = TargetsOf(reports);
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
