// Numbers for texts that anybody may have written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/TextHash.h"

namespace tavrel::host {

// Texts get the numbers 0, 1, … in the order in which they come first. All of them stand in one piece of memory, so
// that a hundred thousand take no more calls for memory than ten do.
class TextNumbers {
 public:
  struct Found {
    std::size_t number;
    bool isNew;
  };

  // The number that the text has, or has now. Cost: linear in the text.
  Found Of(std::string_view text);

  // How many texts there are.
  [[nodiscard]] std::size_t Size() const noexcept { return entries_.size(); }

 private:
  struct Entry {
    std::uint64_t hash;
    std::size_t from;  // in the texts
    std::size_t size;
  };
  // The highest bits of the hash save most looks at the entries.
  struct Slot {
    std::uint32_t next = 0;  // the number behind the text's; 0: nothing is here
    std::uint32_t hash = 0;
  };

  [[nodiscard]] std::size_t FreeSlot(std::uint64_t hash) const noexcept;
  void Grow();

  TextHash hash_;
  std::vector<Slot> slots_;  // as many as a power of two, half of them free
  std::vector<Entry> entries_;
  std::string texts_;
};

}  // namespace tavrel::host
