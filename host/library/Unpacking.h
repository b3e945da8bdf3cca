// Copying what cannot be read in place: compressed files, and standard input.
#pragma once

#include <cstdint>

namespace tavrel::host {

enum class Unpacked {
  Whole,
  CutOff,    // compressed data end too early; what there was is copied
  Damaged,   // they are no compressed data, or others than were written
  TooLarge,  // there are more than `most` bytes
  NoInput,   // reading failed, and errno says why
  NoRoom,    // writing failed, and errno says why
};

// Copies all bytes from one descriptor to the other, from where they stand; what begins as gzip does is
// inflated on the way, all of its members, and what follows them is ignored. It waits where `from` must be
// waited for. Writes no more than `most` bytes and uses the same memory for any input.
[[nodiscard]] Unpacked Unpack(int from, int to, std::int64_t most);

}  // namespace tavrel::host
