// The sets of instructions that tests go through.
#pragma once

#include <vector>

#include "system/Processor.h"

namespace tavrel::test {

using InstructionSets = std::vector<system::InstructionSet>;

// Those that this processor has. Mostly asked with the sets that a job has functions of its own for.
[[nodiscard]] inline InstructionSets SupportedAmong(InstructionSets sets) {
  std::erase_if(sets, [](system::InstructionSet set) { return !system::IsSupported(set); });
  return sets;
}

[[nodiscard]] inline InstructionSets SetsForIndex() {
  using enum system::InstructionSet;
  return SupportedAmong({kPlain, kBaseline, kAvx2, kAvx512});
}

[[nodiscard]] inline InstructionSets SetsForBase64() {
  using enum system::InstructionSet;
  return SupportedAmong({kPlain, kBaseline, kAvx2});
}

[[nodiscard]] inline InstructionSets SetsForSearch() {
  using enum system::InstructionSet;
  return SupportedAmong({kPlain, kAvx2});
}

[[nodiscard]] inline InstructionSets SetsForChecksum() {
  using enum system::InstructionSet;
  return SupportedAmong({kPlain, kCarryless});
}

}  // namespace tavrel::test
