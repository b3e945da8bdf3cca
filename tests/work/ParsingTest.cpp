// What parsing costs: the library's steps, and what it searches, moves or fills, counted where it calls
// the C library.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "system/Processor.h"
#include "tests/unit/xml/TreeText.h"
#include "tests/work/HostileTexts.h"
#include "tests/work/WorkCount.h"
#include "xml/CDataSections.h"
#include "xml/TreeBuilder.h"

namespace {

using namespace tavrel::test;

// How often the work of removing markers is that of the value's length.
double WorkPerByte(const std::string& value) {
  std::string copy = value;
  const WorkCount work =
      WorkOf([&copy] { tavrel::xml::RemoveValueMarkers(copy.data(), copy.data() + copy.size()); });
  return static_cast<double>(work.steps + work.bytes) / static_cast<double>(value.size());
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

constexpr std::size_t kTextsLength = std::size_t{64} << 10;

INSTANTIATE_TEST_SUITE_P(Hostile, Work, testing::ValuesIn(tavrel::test::kHostileTexts),
                         [](const auto& hostile) { return std::string(hostile.param.name); });

}  // namespace

TEST_P(Work, OfSearchingAndMovingIsLinearInTheLength) {
  ForEachWay([](const HostileText& hostile) {
    const std::string text = hostile.OfSize(4 * kTextsLength);
    EXPECT_LE(WorkOf([&text] { static_cast<void>(Parse(text)); }).bytes, 16 * text.size());
  });
}

TEST_P(Work, IsLinearInTheLength) {
  ForEachWay([](const HostileText& hostile) {
    const std::string small = hostile.OfSize(kTextsLength);
    const std::string large = hostile.OfSize(8 * kTextsLength);
    ExpectLinear(WorkOf([&small] { static_cast<void>(Parse(small)); }),
                 WorkOf([&large] { static_cast<void>(Parse(large)); }), 8, kTextsLength / 8);
  });
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
