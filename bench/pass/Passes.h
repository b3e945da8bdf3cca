// Our ways to run the pass, and what they are checked with.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/reference/TreeHash.h"

namespace tavrel::bench {

struct Pass {
  std::string name;
  // Builds a tree of the zero-terminated text, inside of it. Result: the seconds that took.
  std::function<double(char* text, std::size_t length)> run;
  // The same; the result tells of the tree.
  std::function<reference::TreeSummary(char* text, std::size_t length)> summary;
};

// The literal form first; then the plain pass, and the indexed one by every instruction set that is
// supported.
[[nodiscard]] std::vector<Pass> AllPasses();

// The names, among them, of those with a target of their own.
inline constexpr std::string_view kAvx2Name = "indexed, AVX2";
inline constexpr std::string_view kAvx512Name = "indexed, AVX-512";

// Throws std::runtime_error when two passes build different trees of a text that chance made.
void CheckRandomTexts(const std::vector<Pass>& passes);

}  // namespace tavrel::bench
