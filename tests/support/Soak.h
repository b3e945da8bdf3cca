// How much of a test to run: a sample of it with every other test, all of it in scripts/soak, which sets
// TAVREL_SOAK and shows the lines that begin with "figure: ".
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace tavrel::test {

[[nodiscard]] inline bool IsSoaking() {
  return std::getenv("TAVREL_SOAK") != nullptr;
}

[[nodiscard]] inline int Soaked(int usual, int soaking) {
  return IsSoaking() ? soaking : usual;
}

// One line of scripts/soak: a count, and what was counted.
inline void PrintFigure(std::int64_t count, const std::string& what) {
  if (IsSoaking()) std::printf("figure: %lld %s\n", static_cast<long long>(count), what.c_str());
}

}  // namespace tavrel::test
