// The structural index of a text: where every '<' and '>' stands, found a block at a time with the
// widest instructions of the machine. It is the first stage of Langdale and Lemire ("Parsing
// Gigabytes of JSON per Second", 2019), made while the second one goes on.
#pragma once

#include <cstddef>
#include <cstdint>

#include "system/Processor.h"

namespace tavrel::xml {

// Writes the positions of the '<' and '>' among `length` bytes, in order, each plus `base`.
// positions: room for `length` + kIndexSlack numbers; those behind the result are left undefined.
// Result:    how many there are.
using IndexFunction = std::size_t (*)(const char* text, std::size_t length, std::uint32_t base,
                                      std::uint32_t* positions) noexcept;
inline constexpr std::size_t kIndexSlack = 64;

// The function for a supported set.
[[nodiscard]] IndexFunction IndexFunctionFor(system::InstructionSet set) noexcept;

// The positions of a text that is indexed as reading goes on. Bytes in front of the next position
// may be changed at any time, but no '<' or '>' may appear there.
class StructuralIndex {
 public:
  StructuralIndex(const char* text, const char* end, system::InstructionSet set) noexcept
      : text_(text), length_(static_cast<std::size_t>(end - text)), index_(IndexFunctionFor(set)) {}

  // Whether that many positions are left, up to kMostAhead; indexes further as needed.
  [[nodiscard]] bool Has(std::size_t count) noexcept {
    return static_cast<std::size_t>(last_ - next_) >= count || Fill(count);
  }
  [[nodiscard]] const std::uint32_t* Next() const noexcept { return next_; }
  [[nodiscard]] std::ptrdiff_t Left() const noexcept { return last_ - next_; }
  void Skip(std::size_t count) noexcept { next_ += count; }
  // Skips every position before that one.
  void SkipTo(std::size_t position) noexcept;

  // Where that many positions are left, as many bytes of the text are, from the first one on.
  static constexpr std::size_t kMostAhead = 8;
  static constexpr std::size_t kLongest = UINT32_MAX;  // in bytes, of a text

 private:
  static constexpr std::size_t kBlock = 8192;

  bool Fill(std::size_t count) noexcept;

  const char* text_;
  std::size_t length_;
  std::size_t indexed_ = 0;  // bytes whose positions are, or were, in the list
  IndexFunction index_;
  std::uint32_t positions_[kMostAhead + kBlock + kIndexSlack];
  const std::uint32_t* next_ = positions_;
  const std::uint32_t* last_ = positions_;
};

}  // namespace tavrel::xml
