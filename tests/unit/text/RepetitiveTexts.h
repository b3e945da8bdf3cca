// Terms and texts that make a careless search take both lengths multiplied.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tests/support/Texts.h"

namespace tavrel::test {

struct RepetitiveText {
  std::string text;
  std::string term;
  bool isFound;
};

// size: of each text, about, in bytes.
[[nodiscard]] inline std::vector<RepetitiveText> RepetitiveTexts(std::size_t size) {
  const std::string all = Repeated("a", size);
  const std::string half = Repeated("a", size / 2);
  const std::string sharp = Repeated("ß", size / 2);
  const std::string odd = Repeated("s", size / 8 * 2 + 1);
  return {
      {all, Join({half, "b"}), false},
      {all, Join({"b", half}), false},
      {Join({all, "b"}), Join({half, "b"}), true},
      {Join({half, "b", half}), Join({half, "a"}), false},
      {Repeated("ab", size / 2), Join({Repeated("ab", size / 8), "aab"}), false},
      {sharp, odd, false},
      {Join({sharp, "s"}), odd, true},
      {Join({"e", Repeated("\u0301", size / 2)}), Repeated("\u0301", size / 8), false},
      {Join({all, "\u0301"}), all, false},
  };
}

}  // namespace tavrel::test
