#include "system/Processor.h"

#include <atomic>

namespace tavrel::system {
namespace {

// The plain set, which is nobody's widest: not asked yet.
constinit std::atomic<InstructionSet> widest{InstructionSet::kPlain};

}  // namespace

InstructionSet WidestSet() noexcept {
  if constexpr (!kForX86) return InstructionSet::kBaseline;
  InstructionSet set = widest.load(std::memory_order_relaxed);
  if (set == InstructionSet::kPlain) {
    if constexpr (kForX86) set = AskX86();
    widest.store(set, std::memory_order_relaxed);
  }
  return set;
}

}  // namespace tavrel::system
