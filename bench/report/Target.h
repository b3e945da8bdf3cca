// A ratio that we have set out to reach, and how far it has got.
#pragma once

#include <string>

#include "bench/report/Series.h"

namespace tavrel::bench {

enum class Bound { kAtLeast, kAtMost };

// kNoisy: the middle half of the rounds stands on both sides of the mark.
enum class Verdict { kPass, kFail, kNoisy };

struct Target {
  int number;  // its line in docs/performance.md; several targets may stand in one
  std::string name;
  Series ratio;  // round by round
  Bound bound;
  double pass;      // beyond it begins "not good enough"
  double moonshot;  // what we would like

  [[nodiscard]] Verdict Judge() const;
  [[nodiscard]] bool IsMoonshot() const { return Reaches(ratio.Median(), moonshot); }

 private:
  [[nodiscard]] bool Reaches(double value, double mark) const {
    return bound == Bound::kAtLeast ? value >= mark : value <= mark;
  }
};

[[nodiscard]] const char* NameOf(Verdict verdict);

// One line: number, name, median, spread, both marks, verdict.
void Print(const Target& target);

}  // namespace tavrel::bench
