#include "tests/work/WorkCount.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/types.h>

#include <algorithm>
#include <cstddef>

#include "tests/support/Soak.h"

namespace {

constinit tavrel::test::WorkCount work;

// How far a search went: to what it found, or over everything.
std::size_t Searched(const void* from, const void* found, std::size_t bytes) {
  if (found == nullptr) return bytes;
  return static_cast<std::size_t>(static_cast<const char*>(found) - static_cast<const char*>(from));
}

}  // namespace

// The names that the compiler and the linker ask for.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

void __sanitizer_cov_trace_pc();
void __sanitizer_cov_trace_pc() {
  ++work.steps;
}

#define WRAPPED(result, name, ...)   \
  result __real_##name(__VA_ARGS__); \
  result __wrap_##name(__VA_ARGS__); \
  result __wrap_##name(__VA_ARGS__)

WRAPPED(void*, calloc, std::size_t count, std::size_t bytes) {
  work.bytes += count * bytes;
  return __real_calloc(count, bytes);
}
WRAPPED(void*, memchr, const void* from, int byte, std::size_t bytes) {
  void* found = __real_memchr(from, byte, bytes);
  work.bytes += Searched(from, found, bytes);
  return found;
}
WRAPPED(int, memcmp, const void* a, const void* b, std::size_t bytes) {
  work.bytes += bytes;
  return __real_memcmp(a, b, bytes);
}
WRAPPED(void*, memcpy, void* to, const void* from, std::size_t bytes) {
  work.bytes += bytes;
  return __real_memcpy(to, from, bytes);
}
WRAPPED(void*, memmem, const void* from, std::size_t bytes, const void* text, std::size_t length) {
  void* found = __real_memmem(from, bytes, text, length);
  work.bytes += Searched(from, found, bytes);
  return found;
}
WRAPPED(void*, memmove, void* to, const void* from, std::size_t bytes) {
  work.bytes += bytes;
  return __real_memmove(to, from, bytes);
}
WRAPPED(void*, memset, void* to, int byte, std::size_t bytes) {
  work.bytes += bytes;
  return __real_memset(to, byte, bytes);
}
WRAPPED(ssize_t, pread, int file, void* to, std::size_t bytes, off_t at) {
  const ssize_t got = __real_pread(file, to, bytes, at);
  work.bytes += static_cast<std::size_t>(std::max<ssize_t>(got, 0));
  return got;
}
WRAPPED(ssize_t, read, int file, void* to, std::size_t bytes) {
  const ssize_t got = __real_read(file, to, bytes);
  work.bytes += static_cast<std::size_t>(std::max<ssize_t>(got, 0));
  return got;
}
// Counted as if the block always moved.
WRAPPED(void*, realloc, void* block, std::size_t bytes) {
  work.bytes += std::min(malloc_usable_size(block), bytes);
  return __real_realloc(block, bytes);
}
WRAPPED(char*, strchrnul, const char* text, int byte) {
  char* found = __real_strchrnul(text, byte);
  work.bytes += static_cast<std::size_t>(found - text) + 1;
  return found;
}
WRAPPED(int, strcmp, const char* a, const char* b) {
  std::size_t same = 0;
  while (a[same] == b[same] && a[same] != '\0') ++same;
  work.bytes += same + 1;
  return __real_strcmp(a, b);
}
WRAPPED(std::size_t, strlen, const char* text) {
  const std::size_t length = __real_strlen(text);
  work.bytes += length;
  return length;
}
WRAPPED(int, strncmp, const char* a, const char* b, std::size_t bytes) {
  work.bytes += bytes;
  return __real_strncmp(a, b, bytes);
}
WRAPPED(std::size_t, strnlen, const char* text, std::size_t bytes) {
  const std::size_t length = __real_strnlen(text, bytes);
  work.bytes += length;
  return length;
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)

namespace tavrel::test {

void PrintTo(const WorkCount& counted, std::ostream* stream) {
  *stream << counted.steps << " steps and " << counted.bytes << " bytes";
}

WorkCount WorkSoFar() noexcept {
  return work;
}

void ExpectLinear(const WorkCount& small, const WorkCount& large, std::uint64_t growth,
                  std::uint64_t input) {
  // Half as much again covers a logarithm: it grows by a fifth from ten thousand pieces to eight times
  // as many. Blocks that grow by doubling are copied once more at most.
  const auto most = [growth](std::uint64_t counted) { return counted * growth * 3 / 2; };
  EXPECT_LE(large.steps, most(std::max(small.steps, input)))
      << "steps, against " << small.steps << " for " << growth << " times less";
  EXPECT_LE(large.bytes, most(std::max(small.bytes, 32 * input)))
      << "bytes, against " << small.bytes << " for " << growth << " times less";
}

void ExpectDoubled(const WorkCount& small, const WorkCount& large, const std::string& what) {
  constexpr double kMost = 2.1;
  const auto ratio = [](std::uint64_t of, std::uint64_t to) {
    return static_cast<double>(of) / static_cast<double>(std::max<std::uint64_t>(to, 1));
  };
  const double steps = ratio(large.steps, small.steps);
  const double bytes = ratio(large.bytes, small.bytes);
  EXPECT_GT(small.steps, 0u) << what;
  EXPECT_LE(steps, kMost) << what << ": steps";
  EXPECT_LE(bytes, kMost) << what << ": bytes";
  PrintFigure(static_cast<std::int64_t>(100 * std::max(steps, bytes)),
              "hundredths of the work for twice the input: " + what);
}

}  // namespace tavrel::test
