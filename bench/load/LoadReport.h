// What load_library prints of its rounds.
#pragma once

#include <vector>

#include "bench/load/Rounds.h"
#include "bench/report/Report.h"

namespace tavrel::bench {

void AddFacts(const std::vector<Input>& inputs, const std::vector<Loader>& loaders, Report& report);

// The figures of every case, each peer's time over the library's, and the targets.
// inputs: from the smallest to the largest.
void AddResults(const std::vector<Input>& inputs, const std::vector<Case>& cases, Report& report);

// How much more processor time a byte takes in one file than in another, of the two that differ most.
// cases: the library alone, with two files at least, in rounds that no other case took part in.
void AddEvenness(const std::vector<Case>& cases, Report& report);

}  // namespace tavrel::bench
