// Memory between two pages that cannot be touched: a read or write one byte outside ends the test.
//
//   | no access | ........................ | no access |
//               ^ PlaceAtStart()           ^ the zero byte of PlaceAtEnd() stands just before
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace tavrel::test {

class GuardedPages {
 public:
  // capacity: of the longest text, in bytes, its zero byte included.
  explicit GuardedPages(std::size_t capacity)
      : page_(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
        usable_((capacity + page_ - 1) / page_ * page_) {
    constexpr int kFlags = MAP_PRIVATE | MAP_ANONYMOUS;
    void* start = mmap(nullptr, usable_ + 2 * page_, PROT_NONE, kFlags, -1, 0);
    if (start == MAP_FAILED) std::abort();
    start_ = static_cast<char*>(start) + page_;
    if (mprotect(start_, usable_, PROT_READ | PROT_WRITE) != 0) std::abort();
  }
  GuardedPages(const GuardedPages&) = delete;
  GuardedPages& operator=(const GuardedPages&) = delete;
  ~GuardedPages() { munmap(start_ - page_, usable_ + 2 * page_); }

  // Copies `text` with a zero byte behind it so that the zero byte is the last one there is.
  [[nodiscard]] char* PlaceAtEnd(std::string_view text) {
    return Place(text, start_ + usable_ - text.size() - 1);
  }
  // The same at the other end; what lies behind the zero byte is `filler`, so that a reader that
  // runs past the zero byte is noticed as well.
  [[nodiscard]] char* PlaceAtStart(std::string_view text, char filler) {
    char* place = Place(text, start_);
    std::memset(place + text.size() + 1, filler, usable_ - text.size() - 1);
    return place;
  }

 private:
  char* Place(std::string_view text, char* place) const {
    if (text.size() + 1 > usable_) std::abort();
    if (!text.empty()) std::memcpy(place, text.data(), text.size());
    place[text.size()] = '\0';
    return place;
  }

  std::size_t page_;
  std::size_t usable_;
  char* start_ = nullptr;
};

}  // namespace tavrel::test
