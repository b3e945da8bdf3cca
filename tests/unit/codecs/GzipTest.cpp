#include <gtest/gtest.h>
#include <zlib.h>

#include <string>

#include "codecs/Gzip.h"
#include "system/Files.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"

namespace faults = tavrel::system::faults;
using tavrel::gzipDeflate;
using tavrel::gzipInflate;
using tavrel::system::ByteBuffer;

namespace {

constexpr int kGzip = 15 + 16;
constexpr int kZlib = 15;
constexpr int kRaw = -15;

// A whole stream made by the compression library itself.
std::string Compressed(std::string_view text, int windowBits, int level = -1) {
  z_stream stream{};
  EXPECT_EQ(deflateInit2(&stream, level, Z_DEFLATED, windowBits, 8, Z_DEFAULT_STRATEGY), Z_OK);
  std::string output(deflateBound(&stream, text.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(output.data());
  stream.avail_out = static_cast<uInt>(output.size());
  EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
  output.resize(stream.total_out);
  deflateEnd(&stream);
  return output;
}

ByteBuffer Inflated(std::string_view stream) {
  return gzipInflate(ByteBuffer::Copy(stream));
}

// A text that compresses about as well as a library file does.
std::string SampleText(std::size_t size) {
  tavrel::test::Random random(size);
  const std::vector<std::string_view> words = {"<key>",  "</key>",    "<string>",  "</string>",
                                               "Name",   "Artist",    "\n\t\t\t",  "Bach",
                                               "Händel", "<integer>", "</integer>"};
  std::string text = random.Text(words, size / 3 + 1);
  text.resize(size);
  return text;
}

}  // namespace

TEST(GzipInflate, AnEmptyBufferComesBackItself) {
  const ByteBuffer empty = ByteBuffer::Copy("");
  EXPECT_EQ(gzipInflate(empty), empty);
  EXPECT_FALSE(gzipInflate(ByteBuffer()));
}

TEST(GzipInflate, ReadsGzipAndZlibStreams) {
  const std::string text = SampleText(10000);
  EXPECT_EQ(Inflated(Compressed(text, kGzip)).view(), text);
  EXPECT_EQ(Inflated(Compressed(text, kZlib)).view(), text);
}

TEST(GzipInflate, AStreamOfNoBytesIsAnEmptyBuffer) {
  for (const int framing : {kGzip, kZlib}) {
    const ByteBuffer result = Inflated(Compressed("", framing));
    EXPECT_TRUE(result);
    EXPECT_EQ(result.size(), 0u);
  }
}

TEST(GzipInflate, ReadsAStreamOfAnySize) {
  for (std::size_t size = 1; size < 300000; size += 1 + size / 7) {
    const std::string text = SampleText(size);
    for (const int level : {0, 1, 9}) {
      ASSERT_TRUE(Inflated(Compressed(text, kGzip, level)).view() == text) << size;
    }
  }
}

TEST(GzipInflate, GrowsToManyTimesTheSizeOfItsInput) {
  for (const std::size_t size : {std::size_t{1000}, std::size_t{100000}, std::size_t{64} << 20}) {
    const std::string text(size, 'x');
    const std::string stream = Compressed(text, kGzip, 9);
    ASSERT_LT(stream.size(), size);
    ASSERT_TRUE(Inflated(stream).view() == text) << stream.size() << " bytes to " << size;
  }
}

TEST(GzipInflate, ReadsTheMostThatAStreamCanStandFor) {
  // One long run of zero bytes compresses 1030 to 1, close to the format's limit of 1032 to 1.
  const std::string text(std::size_t{32} << 20, '\0');
  const std::string stream = Compressed(text, kZlib, 9);
  ASSERT_GT(text.size() / stream.size(), 1020u);
  EXPECT_TRUE(Inflated(stream).view() == text);
}

TEST(GzipInflate, OnlyTheFirstMemberCounts) {
  const std::string first = Compressed("first", kGzip);
  EXPECT_EQ(Inflated(first + Compressed("second", kGzip)).view(), "first");
  EXPECT_EQ(Inflated(first + first.substr(0, 5)).view(), "first");
  EXPECT_EQ(Inflated(first + std::string(1000, '\xFF')).view(), "first");
  EXPECT_EQ(Inflated(Compressed("first", kZlib) + "garbage").view(), "first");
}

TEST(GzipInflate, AStreamCutOffAnywhereGivesNone) {
  const std::string text = SampleText(2000);
  for (const int framing : {kGzip, kZlib}) {
    const std::string stream = Compressed(text, framing);
    for (std::size_t length = 1; length < stream.size(); ++length) {
      ASSERT_FALSE(Inflated(stream.substr(0, length))) << length << " of " << stream.size();
    }
    EXPECT_TRUE(Inflated(stream));
  }
}

TEST(GzipInflate, ADamagedStreamNeverGivesOtherBytes) {
  // One that hardly repeats itself: what is repeated could as well be taken from another place.
  tavrel::test::Random random(1);
  const std::string text =
      random.Text({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l"}, 200);
  for (const int framing : {kGzip, kZlib}) {
    const std::string stream = Compressed(text, framing);
    for (std::size_t bit = 0; bit < 8 * stream.size(); ++bit) {
      std::string damaged = stream;
      damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
      const ByteBuffer result = Inflated(damaged);
      // A time stamp or another field that says nothing about the contents may differ.
      if (result) {
        ASSERT_EQ(result.view(), text) << bit;
        ASSERT_TRUE(framing == kZlib || bit < 80) << bit;
      }
    }
  }
}

TEST(GzipInflate, AWrongChecksumOrLengthGivesNone) {
  const std::string stream = Compressed("some text", kGzip);
  for (std::size_t back = 1; back <= 8; ++back) {
    std::string damaged = stream;
    damaged[stream.size() - back] ^= 1;
    EXPECT_FALSE(Inflated(damaged)) << back;
  }
}

TEST(GzipInflate, BytesOfAnotherKindGiveNone) {
  EXPECT_FALSE(Inflated("x"));
  EXPECT_FALSE(Inflated("\x1F"));
  EXPECT_FALSE(Inflated("<?xml version=\"1.0\"?><plist/>"));
  EXPECT_FALSE(Inflated(Compressed("a stream without a header", kRaw)));
  EXPECT_FALSE(Inflated(std::string(1000, '\0')));
}

TEST(GzipInflate, AStreamThatNeedsADictionaryGivesNone) {
  z_stream stream{};
  ASSERT_EQ(deflateInit(&stream, 9), Z_OK);
  const std::string dictionary = "some text that both sides know";
  deflateSetDictionary(&stream, reinterpret_cast<const Bytef*>(dictionary.data()),
                       static_cast<uInt>(dictionary.size()));
  std::string text = "some text that both sides do not know";
  std::string output(1000, '\0');
  stream.next_in = reinterpret_cast<Bytef*>(text.data());
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(output.data());
  stream.avail_out = static_cast<uInt>(output.size());
  ASSERT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
  output.resize(stream.total_out);
  deflateEnd(&stream);
  EXPECT_FALSE(Inflated(output));
}

TEST(GzipInflate, RandomBytesBehindAHeaderGiveNone) {
  tavrel::test::Random random(3);
  const std::string header("\x1F\x8B\x08\0\0\0\0\0\0\x03", 10);
  for (int round = 0; round < tavrel::test::Rounds(20000); ++round) {
    ASSERT_FALSE(Inflated(header + random.Bytes(1 + random.Below(200)))) << round;
  }
}

TEST(GzipInflate, ALargeInputIsReadWhateverFollowsItsFirstMember) {
  // Untouched pages cost nothing; where pointers have four bytes, there is not room for all of them.
  constexpr std::size_t kSize = std::size_t{sizeof(void*) == 8 ? 1600 : 600} << 20;
  const auto block = tavrel::system::AllocateBlock(kSize);
  ASSERT_NE(block.address, nullptr);
  const std::string stream = Compressed("text", kGzip);
  stream.copy(block.address, stream.size());
  EXPECT_EQ(gzipInflate(ByteBuffer::Adopt(block, kSize)).view(), "text");
}

TEST(GzipDeflate, AnEmptyBufferComesBackItself) {
  const ByteBuffer empty = ByteBuffer::Copy("");
  EXPECT_EQ(gzipDeflate(empty), empty);
  EXPECT_FALSE(gzipDeflate(ByteBuffer()));
}

TEST(GzipDeflate, WritesWhatTheCompressionLibraryWritesByDefault) {
  tavrel::test::Random random(4);
  for (const std::size_t size : {std::size_t{1}, std::size_t{100}, std::size_t{16383},
                                 std::size_t{16384}, std::size_t{16385}, std::size_t{500000}}) {
    for (const std::string& text : {SampleText(size), random.Bytes(size), std::string(size, 'x')}) {
      const ByteBuffer stream = gzipDeflate(ByteBuffer::Copy(text));
      ASSERT_TRUE(stream.view() == Compressed(text, kGzip)) << size;
    }
  }
}

TEST(GzipDeflate, PutsNoNameAndNoTimeIntoTheHeader) {
  const ByteBuffer stream = gzipDeflate(ByteBuffer::Copy("text"));
  EXPECT_EQ(stream.view().substr(0, 9), std::string_view("\x1F\x8B\x08\0\0\0\0\0\0", 9));
}

TEST(GzipDeflate, InflatingGivesTheSameBytesBack) {
  tavrel::test::Random random(5);
  for (int round = 0; round < tavrel::test::Rounds(800); ++round) {
    const std::size_t size = 1 + random.Below(40000);
    const std::string bytes = round % 2 == 0 ? random.Bytes(size) : SampleText(size);
    const ByteBuffer input = ByteBuffer::Copy(bytes);
    ASSERT_TRUE(gzipInflate(gzipDeflate(input)).view() == bytes) << size;
    ASSERT_TRUE(input.view() == bytes);
  }
}

TEST(GzipDeflate, LargeIncompressibleBytesFit) {
  const std::string bytes = tavrel::test::Random(6).Bytes(std::size_t{5} << 20);
  const ByteBuffer stream = gzipDeflate(ByteBuffer::Copy(bytes));
  EXPECT_GT(stream.size(), bytes.size());
  EXPECT_TRUE(gzipInflate(stream).view() == bytes);
}

TEST(Gzip, ExhaustedMemoryGivesNone) {
  const ByteBuffer text = ByteBuffer::Copy(SampleText(5000));
  const ByteBuffer stream = gzipDeflate(text);
  faults::FailAfter(0, false);
  EXPECT_FALSE(gzipInflate(stream));
  EXPECT_FALSE(gzipDeflate(text));
  faults::Stop();
  // The block of the output is there, its handle is not.
  faults::FailAfter(2, true);
  EXPECT_FALSE(gzipInflate(stream));
  faults::FailAfter(2, true);
  EXPECT_FALSE(gzipDeflate(text));
  faults::Stop();
  // A block that cannot be trimmed is only larger than it need be.
  faults::FailAfter(1, true);
  EXPECT_TRUE(gzipInflate(stream).view() == text.view());
  faults::FailAfter(1, true);
  EXPECT_TRUE(gzipDeflate(text).view() == stream.view());
  faults::Stop();
}

TEST(Gzip, LessRoomThanTheMostThatCouldBeNeededMayDo) {
  const ByteBuffer text = ByteBuffer::Copy(SampleText(5000));
  const ByteBuffer stream = ByteBuffer::Copy(Compressed(text.view(), kGzip));
  faults::FailAfter(0, true);  // the first wish, for the largest possible output, is refused
  EXPECT_EQ(gzipInflate(stream).view(), text.view());
  const ByteBuffer zlibStream = ByteBuffer::Copy(Compressed(text.view(), kZlib));
  faults::FailAfter(0, true);
  EXPECT_EQ(gzipInflate(zlibStream).view(), text.view());
  faults::FailAfter(0, true);
  EXPECT_EQ(gzipDeflate(text).view(), stream.view());
  faults::Stop();
}
