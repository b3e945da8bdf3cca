// What stands in the place of the library's memory in the program that measures the pass alone:
// blocks that are released stay resident and are handed out again, so that no run pays for the
// system's zeroing of pages.
#pragma once

namespace tavrel::bench {

// Fills the released blocks with zeroes again. They cannot be handed out before.
void ZeroReleasedBlocks() noexcept;

}  // namespace tavrel::bench
