// Memory for the numbers of many columns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <span>
#include <utility>

#include "system/ZeroedArena.h"

namespace tavrel::host {

// All columns lie in one piece of memory, on huge pages where the system has them: asking for each small page of
// a large library takes longer than filling it. What is never written takes none.
class NumberRoom {
 public:
  NumberRoom() = default;
  NumberRoom(NumberRoom&& other) noexcept : arena_(std::exchange(other.arena_, {})) {}
  NumberRoom& operator=(NumberRoom&& other) noexcept {
    std::swap(arena_, other.arena_);
    return *this;
  }
  ~NumberRoom() { arena_.ReleaseAll(); }

  // Makes room for so many numbers at once.
  void Reserve(std::size_t numbers) noexcept { arena_.Reserve(numbers * sizeof(std::int64_t)); }

  // So many zeros, which last as long as the room. May throw std::bad_alloc.
  [[nodiscard]] std::span<std::int64_t> Take(std::size_t numbers) {
    if (numbers == 0) return {};
    void* const memory = arena_.Take(numbers * sizeof(std::int64_t));
    if (memory == nullptr) throw std::bad_alloc();
    return {static_cast<std::int64_t*>(memory), numbers};
  }

 private:
  system::ZeroedArena arena_;
};

}  // namespace tavrel::host
