#include "bench/report/Report.h"

#include <fmt/format.h>

#include <utility>

namespace tavrel::bench {
namespace {

json_t* NewText(const std::string& text) {
  return json_stringn(text.data(), text.size());
}

json_t* NewTarget(const Target& target) {
  json_t* const json = json_object();
  json_object_set_new(json, "number", json_integer(target.number));
  json_object_set_new(json, "name", NewText(target.name));
  json_object_set_new(json, "ratios", NewArray(target.ratio.values()));
  json_object_set_new(json, "median", NewNumber(target.ratio.Median()));
  json_object_set_new(json, "bound",
                      json_string(target.bound == Bound::kAtLeast ? "at least" : "at most"));
  json_object_set_new(json, "pass", NewNumber(target.pass));
  json_object_set_new(json, "moonshot", NewNumber(target.moonshot));
  json_object_set_new(json, "verdict", NewText(std::string(NameOf(target.Judge()))));
  json_object_set_new(json, "isMoonshot", json_boolean(target.IsMoonshot()));
  return json;
}

json_t* LastOf(const json_t* array) {
  return json_array_get(array, json_array_size(array) - 1);
}

}  // namespace

Report::Report(const std::string& program) : json_(json_object()) {
  json_object_set_new(json_.get(), "program", NewText(program));
  json_object_set_new(json_.get(), "facts", json_object());
  json_object_set_new(json_.get(), "sections", json_array());
  json_object_set_new(json_.get(), "targets", json_array());
}

void Report::Fact(const std::string& name, const std::string& value) {
  fmt::print("{}: {}\n", name, value);
  json_object_set_new(json_object_get(json_.get(), "facts"), name.c_str(), NewText(value));
}

void Report::Section(const std::string& name) {
  fmt::print("\n{:<48}{:>11}{:>11}{:>11}\n", name, "min", "median", "max");
  json_t* const section = json_object();
  json_object_set_new(section, "name", NewText(name));
  json_object_set_new(section, "figures", json_array());
  json_array_append_new(json_object_get(json_.get(), "sections"), section);
}

void Report::Figure(const std::string& label, const std::string& unit, const Series& values) {
  const auto number = [](double value) {
    return value >= 1000 ? fmt::format("{:.0f}", value) : fmt::format("{:.4g}", value);
  };
  fmt::print("  {:<46}{:>11}{:>11}{:>11} {}\n", label, number(values.Least()),
             number(values.Median()), number(values.Most()), unit);
  json_t* const figure = json_object();
  json_object_set_new(figure, "label", NewText(label));
  json_object_set_new(figure, "unit", NewText(unit));
  json_object_set_new(figure, "min", NewNumber(values.Least()));
  json_object_set_new(figure, "median", NewNumber(values.Median()));
  json_object_set_new(figure, "max", NewNumber(values.Most()));
  json_object_set_new(figure, "values", NewArray(values.values()));
  json_t* const section = LastOf(json_object_get(json_.get(), "sections"));
  json_array_append_new(json_object_get(section, "figures"), figure);
}

void Report::Seconds(const std::string& label, const Series& seconds) {
  const double median = seconds.Median();
  if (median >= 1) return Figure(label, "s", seconds);
  if (median >= 1e-3) return Figure(label, "ms", seconds.Times(1e3));
  if (median >= 1e-6) return Figure(label, "us", seconds.Times(1e6));
  Figure(label, "ns", seconds.Times(1e9));
}

void Report::Add(Target target) {
  json_array_append_new(json_object_get(json_.get(), "targets"), NewTarget(target));
  targets_.push_back(std::move(target));
}

void Report::Finish(const std::string& jsonFile) const {
  fmt::print("\n");
  for (const Target& target : targets_) Print(target);
  if (!jsonFile.empty()) WriteJson(json_.get(), jsonFile);
}

}  // namespace tavrel::bench
