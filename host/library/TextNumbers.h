// Numbers for texts that anybody may have written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
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
  Found Of(std::string_view text) { return Of(text, HashOf(text)); }

  // The same in two steps, for many texts at a time: each step takes less time when others stand between the two.
  [[nodiscard]] std::uint64_t HashOf(std::string_view text) const { return hash_(text); }
  // Has the processor fetch what Of() will need for a text of that hash.
  void Expect(std::uint64_t hash) const noexcept {
    if (!slots_.empty()) __builtin_prefetch(&slots_[hash & (slots_.size() - 1)]);
  }
  Found Of(std::string_view text, std::uint64_t hash);

  // The number that the text has; none for a text that has not come. Cost: linear in the text.
  [[nodiscard]] std::optional<std::size_t> Find(std::string_view text) const;

  // The text of a number. Valid until another text comes.
  [[nodiscard]] std::string_view Text(std::size_t number) const noexcept {
    const Entry& entry = entries_[number];
    return std::string_view(texts_).substr(entry.from, entry.size);
  }

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

  // The slot of the text or, where it has none, the free one that it belongs into.
  [[nodiscard]] std::size_t SlotOf(std::string_view text, std::uint64_t hash) const noexcept;
  [[nodiscard]] std::size_t FreeSlot(std::uint64_t hash) const noexcept;
  void Grow();

  TextHash hash_;
  std::vector<Slot> slots_;  // as many as a power of two, half of them free
  std::vector<Entry> entries_;
  std::string texts_;
};

}  // namespace tavrel::host
