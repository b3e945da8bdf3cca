// Parsing takes time linear in the length of its text, however hostile that is. The linker puts
// counting forms in the place of the C library's searches and moves, so that the work is counted
// where it can be; what is left is timed with a generous bound.
#include <gtest/gtest.h>
#include <time.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

#include "tests/support/Sanitizers.h"
#include "tests/unit/xml/HostileTexts.h"
#include "tests/unit/xml/TreeText.h"
#include "xml/CDataSections.h"
#include "xml/TreeBuilder.h"

namespace {

constinit std::size_t bytesTouched = 0;

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
extern "C" {

void* __real_memmove(void* to, const void* from, std::size_t bytes);
void* __real_memset(void* to, int byte, std::size_t bytes);
void* __real_memchr(const void* from, int byte, std::size_t bytes);
void* __real_memmem(const void* from, std::size_t bytes, const void* text, std::size_t length);
std::size_t __real_strlen(const char* text);

void* __wrap_memmove(void* to, const void* from, std::size_t bytes) {
  bytesTouched += bytes;
  return __real_memmove(to, from, bytes);
}

void* __wrap_memset(void* to, int byte, std::size_t bytes) {
  bytesTouched += bytes;
  return __real_memset(to, byte, bytes);
}

void* __wrap_memchr(const void* from, int byte, std::size_t bytes) {
  void* found = __real_memchr(from, byte, bytes);
  const char* start = static_cast<const char*>(from);
  bytesTouched +=
      found == nullptr ? bytes : static_cast<std::size_t>(static_cast<char*>(found) - start);
  return found;
}

void* __wrap_memmem(const void* from, std::size_t bytes, const void* text, std::size_t length) {
  void* found = __real_memmem(from, bytes, text, length);
  const char* start = static_cast<const char*>(from);
  bytesTouched +=
      found == nullptr ? bytes : static_cast<std::size_t>(static_cast<char*>(found) - start);
  return found;
}

std::size_t __wrap_strlen(const char* text) {
  const std::size_t length = __real_strlen(text);
  bytesTouched += length;
  return length;
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)

namespace {

using tavrel::test::HostileText;
using tavrel::test::Parse;

double SecondsOnTheProcessor() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// The shortest of a few runs: everything that disturbs a run makes it longer.
template <class Body>
double ShortestTime(Body body) {
  double shortest = 1e9;
  for (int i = 0; i < 5; ++i) {
    const double start = SecondsOnTheProcessor();
    body();
    shortest = std::min(shortest, SecondsOnTheProcessor() - start);
  }
  return shortest;
}

// How often the work of removing markers is that of the value's length.
double WorkPerByte(const std::string& value) {
  std::string copy = value;
  bytesTouched = 0;
  tavrel::xml::RemoveValueMarkers(copy.data(), copy.data() + copy.size());
  return static_cast<double>(bytesTouched) / static_cast<double>(value.size());
}

class Work : public testing::TestWithParam<HostileText> {
 protected:
  ~Work() override { tavrel::xml::ForceParsing(std::nullopt); }

  static void ForEachWay(void (*body)(const HostileText&)) {
    tavrel::xml::ForceParsing({{false, tavrel::system::InstructionSet::kPlain}});
    body(GetParam());
    tavrel::xml::ForceParsing({{true, tavrel::system::WidestSet()}});
    body(GetParam());
  }
};

constexpr std::size_t kSize = std::size_t{256} << 10;
constexpr std::size_t kTextsLength = tavrel::test::kSanitized ? kSize / 4 : kSize;

INSTANTIATE_TEST_SUITE_P(Hostile, Work, testing::ValuesIn(tavrel::test::kHostileTexts),
                         [](const auto& hostile) { return std::string(hostile.param.name); });

}  // namespace

TEST_P(Work, OfSearchingAndMovingIsLinearInTheLength) {
  ForEachWay([](const HostileText& hostile) {
    const std::string text = hostile.OfSize(4 * kTextsLength);
    bytesTouched = 0;
    const auto document = Parse(text);
    EXPECT_LE(bytesTouched, 16 * text.size());
  });
}

TEST_P(Work, TakesTimeLinearInTheLength) {
  if (tavrel::test::kSanitized) GTEST_SKIP() << "the sanitizer checks whole ranges at each search";
  ForEachWay([](const HostileText& hostile) {
    const std::string small = hostile.OfSize(kTextsLength);
    const std::string large = hostile.OfSize(4 * kTextsLength);
    // Where nearly nothing is done, only the clock's noise would be compared.
    constexpr double kNothing = 1e-3;
    const double smallTime = ShortestTime([&] { static_cast<void>(Parse(small)); });
    const double largeTime = ShortestTime([&] { static_cast<void>(Parse(large)); });
    EXPECT_LT(largeTime, 8 * std::max(smallTime, kNothing)) << "against " << smallTime;
  });
}

TEST(WorkCounter, Counts) {
  if (tavrel::test::kSanitized) GTEST_SKIP() << "the sanitizer may have put its own forms in";
  std::string text(1000, 'x');
  bytesTouched = 0;
  static_cast<void>(Parse("<a>" + text + "<b/>" + text));
  EXPECT_GT(bytesTouched, 1000u);
}

TEST(WorkOfRemovingMarkers, IsLinearInTheValue) {
  const auto repeated = [](std::string_view piece, std::size_t bytes) {
    std::string text;
    while (text.size() < bytes) text += piece;
    return text;
  };
  const std::string openers = repeated("<![CDATA[", kTextsLength);
  const std::string ends = repeated("]]>", kTextsLength);
  EXPECT_LT(WorkPerByte(openers), 8);
  EXPECT_LT(WorkPerByte(openers + ends), 8);
  EXPECT_LT(WorkPerByte(openers + repeated("x]]>", kTextsLength)), 8);
  EXPECT_LT(WorkPerByte(ends + openers), 8);
  EXPECT_LT(WorkPerByte(repeated("<![CDATA[x]]>", kTextsLength)), 8);
  EXPECT_LT(WorkPerByte(repeated("<![CDATA[<![CDATA[]]>", kTextsLength) + ends), 8);
  EXPECT_LT(WorkPerByte(repeated("<![C<![CDATA[]]>DATA[", kTextsLength) + ends), 8);
  EXPECT_LT(WorkPerByte(repeated("<![CDATA[]", kTextsLength) + repeated("]>", kTextsLength)), 8);
  EXPECT_LT(WorkPerByte(repeated("<![CDATA", kTextsLength) + repeated("[]]>", kTextsLength)), 8);
}
