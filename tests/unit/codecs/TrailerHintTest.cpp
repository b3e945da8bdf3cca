// The length in a gzip trailer is a hint: wrong or missing, it changes no result.
#include <gtest/gtest.h>

#include <string>

#include "codecs/Crc32.h"
#include "codecs/Gzip.h"
#include "tests/reference/GzipModel.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"

using tavrel::system::ByteBuffer;
using tavrel::test::ModelInflate;

namespace {

constexpr std::size_t kHeader = 10;

std::string Deflated(std::string_view text) {
  return std::string(tavrel::gzipDeflate(ByteBuffer::Copy(text)).view());
}

// The result must be the model's, of a stream and of everything that it stands in.
void ExpectAsTheModel(const std::string& stream, std::string_view what) {
  const auto expected = ModelInflate(stream);
  const ByteBuffer result = tavrel::gzipInflate(ByteBuffer::Copy(stream));
  ASSERT_EQ(static_cast<bool>(result), expected.has_value()) << what;
  if (expected) {
    ASSERT_TRUE(result.view() == *expected) << what;
  }
}

void ExpectText(const std::string& stream, std::string_view text) {
  EXPECT_TRUE(tavrel::gzipInflate(ByteBuffer::Copy(stream)).view() == text);
  ExpectAsTheModel(stream, "text");
}

std::string WithHeader(char flags, std::string_view fields, const std::string& stream) {
  std::string changed = stream;
  changed[3] = flags;
  return changed.insert(kHeader, fields);
}

std::string HintText(std::size_t size) {
  std::string text = tavrel::test::Random(size).Text({"<key>", "Name", "</key>", "\n", "é"}, size);
  text.resize(size);
  return text;
}

}  // namespace

TEST(TrailerHint, BytesBehindTheStreamGiveAWrongOne) {
  const std::string text = HintText(5000);
  const std::string stream = Deflated(text);
  for (const std::string_view behind :
       {std::string_view("\0\0\0\0", 4),      // no bytes at all
        std::string_view("\1\0\0\0", 4),      // too few
        std::string_view("\x87\x13\0\0", 4),  // one too few
        std::string_view("\x89\x13\0\0", 4),  // one too many
        std::string_view("\xFF\xFF\xFF\xFF", 4), std::string_view("\xFF\xFF\0\0", 4),
        std::string_view("x", 1)}) {
    ExpectText(stream + std::string(behind), text);
  }
}

TEST(TrailerHint, OfALaterMemberSaysNothingAboutTheFirst) {
  const std::string shortOne = Deflated("short");
  const std::string longOne = Deflated(HintText(100000));
  ExpectText(shortOne + longOne, "short");
  ExpectText(longOne + shortOne, HintText(100000));
}

TEST(TrailerHint, AWrongOneAtItsPlaceGivesNone) {
  const std::string stream = Deflated(HintText(3000));
  for (std::size_t back = 1; back <= 8; ++back) {
    for (const char value : {'\0', '\1', '\x7F', '\xFF'}) {
      std::string damaged = stream;
      if (damaged[damaged.size() - back] == value) continue;
      damaged[damaged.size() - back] = value;
      EXPECT_FALSE(tavrel::gzipInflate(ByteBuffer::Copy(damaged))) << back;
      ExpectAsTheModel(damaged, "damaged");
    }
  }
}

TEST(TrailerHint, AStreamCutOffInItsTrailerGivesNone) {
  const std::string stream = Deflated(HintText(3000));
  for (std::size_t less = 1; less <= 12; ++less) {
    EXPECT_FALSE(tavrel::gzipInflate(ByteBuffer::Copy(stream.substr(0, stream.size() - less))));
  }
}

// The last bytes of a stored text, which say its length as the trailer would.
TEST(TrailerHint, ARightOneInTheTextOfAStreamWithoutTrailerGivesNone) {
  const std::string header("\x1F\x8B\x08\0\0\0\0\0\0\x03", kHeader);
  const std::string stored("\x01\x20\0\xDF\xFF", 5);
  const std::string text = std::string(28, 'x') + std::string("\x20\0\0\0", 4);
  EXPECT_FALSE(tavrel::gzipInflate(ByteBuffer::Copy(header + stored + text)));
  ExpectAsTheModel(header + stored + text, "no trailer");
}

TEST(TrailerHint, EveryKindOfHeaderIsRead) {
  const std::string text = HintText(2000);
  const std::string stream = Deflated(text);
  ExpectText(WithHeader('\x01', "", stream), text);
  ExpectText(WithHeader('\x08', std::string_view("name.xml\0", 9), stream), text);
  ExpectText(WithHeader('\x08', std::string_view("\0", 1), stream), text);
  ExpectText(WithHeader('\x10', std::string_view("a comment\0", 10), stream), text);
  ExpectText(WithHeader('\x18', std::string_view("name\0comment\0", 13), stream), text);
  ExpectText(WithHeader('\x04', std::string_view("\3\0abc", 5), stream), text);
}

TEST(TrailerHint, ARightOneSavesASecondBlock) {
  if (!tavrel::IsCrc32Fast())
    GTEST_SKIP() << "this processor lacks carry-less products, without which hints do not pay";
  const std::string stream = Deflated(HintText(2000));
  const auto allocations = [](const std::string& input) {
    const ByteBuffer bytes = ByteBuffer::Copy(input);
    tavrel::system::faults::FailAfter(100, true);
    EXPECT_TRUE(tavrel::gzipInflate(bytes));
    tavrel::system::faults::Stop();
    return tavrel::system::faults::Asked();
  };
  // The block, its trimming and the handle.
  EXPECT_EQ(allocations(stream), 3);
  EXPECT_EQ(allocations(WithHeader('\x08', std::string_view("name.xml\0", 9), stream)), 3);
  EXPECT_EQ(allocations(stream + std::string("\1\0\0\0", 4)), 4);
}

TEST(TrailerHint, AHeaderThatZlibRefusesGivesNone) {
  const std::string stream = Deflated(HintText(2000));
  for (std::size_t at = 0; at < 4; ++at) {
    for (int value = 0; value < 256; ++value) {
      std::string changed = stream;
      changed[at] = static_cast<char>(value);
      ExpectAsTheModel(changed, std::to_string(at));
    }
  }
  // A name without an end.
  ExpectAsTheModel(WithHeader('\x08', "name", stream.substr(0, 14)), "name");
}

TEST(TrailerHint, DamagedStreamsAreJudgedAsByTheModel) {
  tavrel::test::Random random(1);
  for (int round = 0; round < tavrel::test::Rounds(3000); ++round) {
    std::string stream = Deflated(HintText(1 + random.Below(3000)));
    for (std::size_t changes = random.Below(3); changes-- > 0;) {
      stream[random.Below(stream.size())] = static_cast<char>(random.Below(256));
    }
    if (random.Below(3) == 0) stream.resize(1 + random.Below(stream.size()));
    if (random.Below(3) == 0) stream += random.Bytes(random.Below(20));
    ExpectAsTheModel(stream, std::to_string(round));
  }
}
