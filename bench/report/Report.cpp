#include "bench/report/Report.h"

#include <fmt/format.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

namespace tavrel::bench {
namespace {

using Json = nlohmann::ordered_json;

Json JsonOf(const Target& target) {
  return {
      {"number", target.number},
      {"name", target.name},
      {"ratios", target.ratio.values()},
      {"median", target.ratio.Median()},
      {"bound", target.bound == Bound::kAtLeast ? "at least" : "at most"},
      {"pass", target.pass},
      {"moonshot", target.moonshot},
      {"verdict", NameOf(target.Judge())},
      {"isMoonshot", target.IsMoonshot()},
  };
}

}  // namespace

Report::Report(std::string program) : json_(std::make_unique<Json>()) {
  *json_ = {{"program", std::move(program)},
            {"facts", Json::object()},
            {"sections", Json::array()},
            {"targets", Json::array()}};
}

Report::~Report() = default;

void Report::Fact(const std::string& name, const std::string& value) {
  fmt::print("{}: {}\n", name, value);
  (*json_)["facts"][name] = value;
}

void Report::Section(const std::string& name) {
  fmt::print("\n{:<48}{:>11}{:>11}{:>11}\n", name, "min", "median", "max");
  (*json_)["sections"].push_back({{"name", name}, {"figures", Json::array()}});
}

void Report::Figure(const std::string& label, const std::string& unit, const Series& values) {
  const auto number = [](double value) {
    return value >= 1000 ? fmt::format("{:.0f}", value) : fmt::format("{:.4g}", value);
  };
  fmt::print("  {:<46}{:>11}{:>11}{:>11} {}\n", label, number(values.Least()),
             number(values.Median()), number(values.Most()), unit);
  (*json_)["sections"].back()["figures"].push_back({{"label", label},
                                                    {"unit", unit},
                                                    {"min", values.Least()},
                                                    {"median", values.Median()},
                                                    {"max", values.Most()},
                                                    {"values", values.values()}});
}

void Report::Seconds(const std::string& label, const Series& seconds) {
  const double median = seconds.Median();
  if (median >= 1) return Figure(label, "s", seconds);
  if (median >= 1e-3) return Figure(label, "ms", seconds.Times(1e3));
  if (median >= 1e-6) return Figure(label, "us", seconds.Times(1e6));
  Figure(label, "ns", seconds.Times(1e9));
}

void Report::Add(Target target) {
  (*json_)["targets"].push_back(JsonOf(target));
  targets_.push_back(std::move(target));
}

void Report::Finish(const std::string& jsonFile) const {
  fmt::print("\n");
  for (const Target& target : targets_) Print(target);
  if (jsonFile.empty()) return;
  std::ofstream file(jsonFile);
  file << json_->dump(1) << '\n';
  file.close();
  if (!file) throw std::runtime_error("cannot write \"" + jsonFile + "\"");
}

}  // namespace tavrel::bench
