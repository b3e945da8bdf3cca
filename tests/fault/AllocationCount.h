// How much memory the library holds: counted at its calls of the C library, which the linker leads
// through here.
#pragma once

#include <cstddef>
#include <iosfwd>

namespace tavrel::test {

struct HeldMemory {
  std::ptrdiff_t blocks = 0;       // of the malloc family, those of operator new among them
  std::ptrdiff_t mappedBytes = 0;  // from the system itself

  friend bool operator==(const HeldMemory&, const HeldMemory&) = default;
};

void PrintTo(const HeldMemory& held, std::ostream* stream);

[[nodiscard]] HeldMemory Held() noexcept;

}  // namespace tavrel::test
