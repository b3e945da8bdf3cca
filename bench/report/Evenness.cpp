#include "bench/report/Evenness.h"

#include <stdexcept>
#include <utility>

namespace tavrel::bench {

Pair MostUneven(const std::vector<Series>& series) {
  if (series.size() < 2) throw std::logic_error("there is nothing to compare");
  Pair worst{};
  for (std::size_t over = 0; over < series.size(); ++over) {
    for (std::size_t under = 0; under < series.size(); ++under) {
      if (over == under) continue;
      Series ratio = series[over].Over(series[under]);
      if (worst.ratio.size() > 0 && ratio.Median() <= worst.ratio.Median()) continue;
      worst = {over, under, std::move(ratio)};
    }
  }
  return worst;
}

}  // namespace tavrel::bench
