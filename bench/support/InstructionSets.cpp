#include "bench/support/InstructionSets.h"

namespace tavrel::bench {

std::vector<system::InstructionSet> ComparedSets() {
  std::vector<system::InstructionSet> sets;
  for (const system::InstructionSet set : system::kInstructionSets) {
    if (set != system::InstructionSet::kCarryless && system::IsSupported(set)) sets.push_back(set);
  }
  return sets;
}

std::string NameOf(system::InstructionSet set) {
  switch (set) {
    case system::InstructionSet::kPlain:
      return "plain";
    case system::InstructionSet::kBaseline:
      return "baseline";
    case system::InstructionSet::kCarryless:
      return "baseline with carry-less multiplication";
    case system::InstructionSet::kAvx2:
      return "AVX2";
    case system::InstructionSet::kAvx512:
      return "AVX-512";
  }
  return "";
}

}  // namespace tavrel::bench
