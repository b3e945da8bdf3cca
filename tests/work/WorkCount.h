// The work of the library, counted: what a call costs on any machine, however busy it is.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

namespace tavrel::test {

struct WorkCount {
  std::uint64_t steps = 0;  // stretches of the library's code without a jump in them
  std::uint64_t bytes = 0;  // that the C library went over, copied or filled for it

  friend bool operator==(const WorkCount&, const WorkCount&) = default;
};

void PrintTo(const WorkCount& work, std::ostream* stream);

// The work since the program's start.
[[nodiscard]] WorkCount WorkSoFar() noexcept;

template <class Call>
[[nodiscard]] WorkCount WorkOf(Call call) {
  const WorkCount before = WorkSoFar();
  call();
  const WorkCount behind = WorkSoFar();
  return {behind.steps - before.steps, behind.bytes - before.bytes};
}

// Fails the test when the work for `growth` times the input is that of a cost which grows faster than
// the input does. What sorts or looks up may cost a logarithm more.
// input: bytes or pieces of the smaller one; work below one step and 32 bytes for each counts as that.
void ExpectLinear(const WorkCount& small, const WorkCount& large, std::uint64_t growth,
                  std::uint64_t input);

// Fails the test when the work for twice the input is more than 2.1 times the work. What sorts costs a
// logarithm more, which is less than that. scripts/soak shows the ratio.
void ExpectDoubled(const WorkCount& small, const WorkCount& large, const std::string& what);

}  // namespace tavrel::test
