// Whether a byte costs the same in files of every size.
#pragma once

#include <cstddef>
#include <vector>

#include "bench/report/Series.h"

namespace tavrel::bench {

// Two of several series of the same rounds, and the ratio of the one to the other, round by round.
struct Pair {
  std::size_t over;
  std::size_t under;
  Series ratio;
};

// The pair whose ratio has the greatest median. Each ratio is one of a round: neither one lucky run
// nor a slow phase of the machine, in which all are slow, makes files look different.
// series: two at least, each with as many rounds.
[[nodiscard]] Pair MostUneven(const std::vector<Series>& series);

}  // namespace tavrel::bench
