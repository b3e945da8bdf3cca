#include "bench/report/Target.h"

#include <fmt/format.h>

namespace tavrel::bench {

Verdict Target::Judge() const {
  const bool lower = Reaches(ratio.At(0.25), pass);
  const bool upper = Reaches(ratio.At(0.75), pass);
  if (lower != upper) return Verdict::kNoisy;
  return lower ? Verdict::kPass : Verdict::kFail;
}

const char* NameOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::kPass:
      return "PASS";
    case Verdict::kFail:
      return "FAIL";
    case Verdict::kNoisy:
      return "NOISY";
  }
  return "";
}

void Print(const Target& target) {
  fmt::print("{:>3}  {:<58}{:>8.3g} ({:.3g} to {:.3g})  {} {:g}, moonshot {:g}  {}{}\n",
             target.number, target.name, target.ratio.Median(), target.ratio.Least(),
             target.ratio.Most(), target.bound == Bound::kAtLeast ? "at least" : "at most",
             target.pass, target.moonshot, NameOf(target.Judge()),
             target.IsMoonshot() ? ", moonshot" : "");
}

}  // namespace tavrel::bench
