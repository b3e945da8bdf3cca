// Texts that make a careless parser take time that grows with the square of their length.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tavrel::bench {

struct Family {
  std::string name;
  std::string before;
  std::string piece;  // as often as fits; each '#' in it is a digit of the piece's number
  std::string behind;

  [[nodiscard]] std::string OfSize(std::size_t bytes) const;
};

inline const std::string kSectionsInText = "CDATA runs in text";
inline const std::string kSectionsInValue = "CDATA runs in a value";
inline const std::string kMillionAttributes = "a million attributes";

[[nodiscard]] std::vector<Family> AllFamilies();

}  // namespace tavrel::bench
