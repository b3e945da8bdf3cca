// The instruction sets that are measured beside each other.
#pragma once

#include <string>
#include <vector>

#include "system/Processor.h"

namespace tavrel::bench {

// Those that this processor has, from the plainest. (The one with the carry-less multiplication is left
// out: only a checksum is faster with it.)
[[nodiscard]] std::vector<system::InstructionSet> ComparedSets();

[[nodiscard]] std::string NameOf(system::InstructionSet set);

}  // namespace tavrel::bench
