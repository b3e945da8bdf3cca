// What load_library prints of its rounds.
#pragma once

#include <vector>

#include "bench/load/Rounds.h"
#include "bench/report/Report.h"

namespace tavrel::bench {

void AddFacts(const std::vector<Input>& inputs, const std::vector<Program>& programs,
              Report& report);

// The figures of every case, each peer's time over the library's, and the targets.
// inputs: from the smallest to the largest.
void AddResults(const std::vector<Input>& inputs, const std::vector<Case>& cases, Report& report);

}  // namespace tavrel::bench
