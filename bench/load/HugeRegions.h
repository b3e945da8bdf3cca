// The simplest allocator with huge pages behind it: pieces are cut from large regions, and given
// back all at once. What a program could do that knows how much it will need.
#pragma once

#include <cstddef>

namespace tavrel::bench {

// Memory for any type; null when there is none.
[[nodiscard]] void* TakeHuge(std::size_t bytes) noexcept;
void ReleaseAllHuge() noexcept;

}  // namespace tavrel::bench
