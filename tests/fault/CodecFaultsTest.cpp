// Gzip and byte buffers while memory runs out: the whole result, or none.
#include <gtest/gtest.h>

#include <string>

#include "codecs/Gzip.h"
#include "system/ByteBuffer.h"
#include "tests/fault/FailingNew.h"
#include "tests/support/TemporaryHome.h"

using namespace tavrel::test;
using tavrel::system::ByteBuffer;

namespace {

std::string LongText() {
  std::string text;
  for (unsigned i = 0; text.size() < 1000000; ++i) text += std::to_string(i * 7919) + " ";
  return text;
}

template <class Call>
void ExpectWholeOrNone(const std::string& expected, Call call) {
  int whole = 0;
  WithEachAllocationFailing(1, [&] {
    const ByteBuffer result = Inside(call);
    if (!result) return;
    EXPECT_TRUE(result.view() == expected);
    ++whole;
  });
  EXPECT_GE(whole, 2);
}

}  // namespace

TEST(CodecFaults, OfInflatingGiveNone) {
  for (const std::string& text : {std::string("short"), LongText()}) {
    const ByteBuffer packed = tavrel::gzipDeflate(ByteBuffer::Copy(text));
    ExpectWholeOrNone(text, [&packed] { return tavrel::gzipInflate(packed); });
  }
}

TEST(CodecFaults, OfDeflatingGiveNone) {
  for (const std::string& text : {std::string("short"), LongText()}) {
    const ByteBuffer plain = ByteBuffer::Copy(text);
    const std::string packed(tavrel::gzipDeflate(plain).view());
    ExpectWholeOrNone(packed, [&plain] { return tavrel::gzipDeflate(plain); });
  }
}

TEST(CodecFaults, OfDamagedStreamsLoseNothing) {
  const ByteBuffer packed = tavrel::gzipDeflate(ByteBuffer::Copy(LongText()));
  const ByteBuffer cut = ByteBuffer::Copy(packed.view().substr(0, packed.size() / 2));
  WithEachAllocationFailing(
      1, [&cut] { EXPECT_FALSE(Inside([&cut] { return tavrel::gzipInflate(cut); })); });
}

TEST(CodecFaults, OfCopyingABufferGiveNone) {
  for (const std::string& text : {std::string(), std::string("short"), LongText()}) {
    ExpectWholeOrNone(text, [&text] { return ByteBuffer::Copy(text); });
  }
}

TEST(CodecFaults, OfReadingACompressedFileGiveNone) {
  const TemporaryHome home;
  const std::string text = LongText();
  const std::string path = home.path() + "/a file whose path is longer than a string holds.gz";
  WriteFile(path, tavrel::gzipDeflate(ByteBuffer::Copy(text)).view());
  WithEachAllocationFailing(2, [&] {
    try {
      const ByteBuffer bytes =
          Inside([&path] { return tavrel::dataWithUncompressedContentsOfFile(path); });
      EXPECT_TRUE(!bytes || bytes.view() == text);
    } catch (const std::bad_alloc&) {
    }
  });
}
