// Memory for the library's own data. Every allocation that the library makes by hand goes through
// here or asks AllocationAllowed() first, so that tests can make each of them fail; a failed one
// gives null and never ends the host. (What zlib and the system allocate for themselves is theirs.)
#pragma once

#include <cstddef>
#include <cstdint>

namespace tavrel::system {

// The malloc family: blocks of these can be given to hosts, who release them with free().
[[nodiscard]] void* Allocate(std::size_t bytes) noexcept;
[[nodiscard]] void* AllocateZeroed(std::size_t bytes) noexcept;
// On failure the result is null and `block` is as it was.
[[nodiscard]] void* Reallocate(void* block, std::size_t bytes) noexcept;
void Release(void* block) noexcept;

// A zero-filled block of any size; large ones are mapped from the system, on huge pages where it
// has them, and given back in one call.
struct ZeroedBlock {
  char* address = nullptr;      // null: the allocation failed, or nothing was asked for
  std::size_t mappedBytes = 0;  // 0 when the block came from the malloc family
};

[[nodiscard]] ZeroedBlock AllocateBlock(std::size_t bytes) noexcept;
void ReleaseBlock(ZeroedBlock& block) noexcept;  // leaves `block` empty; an empty one is allowed

// Gives what stands behind the first `bytes` bytes of a non-empty block back, as far as that costs
// no copying of pages; `address` may change.
void TrimBlock(ZeroedBlock& block, std::size_t bytes) noexcept;

// Where tests make allocations fail. `operator new` takes part through a replacement that the fault
// tests link, which asks AllocationAllowed() as the functions above do.
namespace faults {

// The next `successes` allocations succeed; the one after fails, and so do all later ones unless
// `once`.
void FailAfter(std::int64_t successes, bool once) noexcept;
void Stop() noexcept;
// Allocations asked for since FailAfter().
[[nodiscard]] std::int64_t Asked() noexcept;

}  // namespace faults

[[nodiscard]] bool AllocationAllowed() noexcept;

}  // namespace tavrel::system
