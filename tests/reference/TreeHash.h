// One number for a whole tree, to compare trees that different passes built from the same text.
#pragma once

#include <cstdint>

#include "xml/Records.h"

namespace tavrel::reference {

struct TreeSummary {
  std::uint64_t elements;
  std::uint64_t attributes;
  // Of every name, text and value and its place in `bytes`, of every link between records, and of
  // the chain of chunks. Throws std::runtime_error when that chain does not hold together.
  std::uint64_t hash;

  bool operator==(const TreeSummary&) const = default;
};

[[nodiscard]] TreeSummary SummaryOf(const TBXMLFields& document);

}  // namespace tavrel::reference
