// Which calls of this program are the library's: only those can fail, the test's own never do.
#pragma once

namespace tavrel::test {

// While one of these exists, what runs is the library.
class InsideLibrary {
 public:
  InsideLibrary() noexcept;
  InsideLibrary(const InsideLibrary&) = delete;
  InsideLibrary& operator=(const InsideLibrary&) = delete;
  ~InsideLibrary();
};

[[nodiscard]] bool IsInsideLibrary() noexcept;

template <class Call>
auto Inside(Call call) {
  const InsideLibrary inside;
  return call();
}

}  // namespace tavrel::test
