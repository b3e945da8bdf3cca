// Makes the test program that this is linked into run as on a system that lacks two newer calls:
// these definitions stand before those of the C library.
#include <cerrno>

// Both parameter lists are those of the C library.
extern "C" int close_range(unsigned, unsigned, int) noexcept;
extern "C" int memfd_create(const char*, unsigned) noexcept;

extern "C" int close_range(unsigned, unsigned, int) noexcept {
  errno = ENOSYS;
  return -1;
}

extern "C" int memfd_create(const char*, unsigned) noexcept {
  errno = ENOSYS;
  return -1;
}
