// What a benchmark found: printed as it comes, and written as JSON at the end.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "bench/report/Json.h"
#include "bench/report/Series.h"
#include "bench/report/Target.h"

namespace tavrel::bench {

class Report {
 public:
  explicit Report(const std::string& program);

  // What the figures depend on: the input, a peer's version, a choice that was made.
  void Fact(const std::string& name, const std::string& value);
  // Starts a table; what comes next stands in it.
  void Section(const std::string& name);
  // A row: least, median and greatest value.
  void Figure(const std::string& label, const std::string& unit, const Series& values);
  // The same for a time in seconds, in the unit that fits it.
  void Seconds(const std::string& label, const Series& seconds);
  void Add(Target target);

  // Prints the targets; writes everything to that file unless the name is empty.
  // Throws std::runtime_error when it cannot be written.
  void Finish(const std::string& jsonFile) const;

 private:
  JsonOwner json_;
  std::vector<Target> targets_;
};

}  // namespace tavrel::bench
