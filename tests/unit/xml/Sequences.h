// Texts made of the pieces of an alphabet.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace tavrel::test {

using Alphabet = std::vector<std::string_view>;

// Calls `expect` with every sequence of up to `most` pieces of the alphabet.
template <class Expect>
void ForEverySequence(const Alphabet& alphabet, int most, Expect expect, std::string text = "") {
  expect(text);
  if (most == 0 || testing::Test::HasFatalFailure()) return;
  for (const std::string_view piece : alphabet) {
    ForEverySequence(alphabet, most - 1, expect, text + std::string(piece));
  }
}

}  // namespace tavrel::test
