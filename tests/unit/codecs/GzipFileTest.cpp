#include <gtest/gtest.h>

#include <string>

#include "codecs/Gzip.h"
#include "tests/support/TemporaryFolder.h"

using tavrel::dataWithUncompressedContentsOfFile;
using tavrel::system::ByteBuffer;

namespace {

class UncompressedContents : public testing::Test {
 protected:
  tavrel::test::TemporaryFolder folder_;
  const ByteBuffer stream_ = tavrel::gzipDeflate(ByteBuffer::Copy("the text"));
};

}  // namespace

TEST_F(UncompressedContents, OfAGzFileAreInflated) {
  EXPECT_EQ(dataWithUncompressedContentsOfFile(folder_.Write("a.gz", stream_.view())).view(),
            "the text");
  EXPECT_EQ(dataWithUncompressedContentsOfFile(folder_.Write("a.xml.gz", stream_.view())).view(),
            "the text");
}

TEST_F(UncompressedContents, OfAnyOtherFileAreItsBytes) {
  for (const char* name : {"a.GZ", "a.Gz", "a.gz.xml", "a", "gz", "a.gzip", "a.gz ", "a.tgz"}) {
    const std::string path = folder_.Write(name, stream_.view());
    EXPECT_EQ(dataWithUncompressedContentsOfFile(path).view(), stream_.view()) << name;
  }
}

TEST_F(UncompressedContents, AreNotInflatedForTheExtensionOfAFolder) {
  const std::string path = folder_.Write("folder.gz/a", stream_.view());
  EXPECT_EQ(dataWithUncompressedContentsOfFile(path).view(), stream_.view());
}

TEST_F(UncompressedContents, OfAGzFileThatIsNoStreamAreNone) {
  EXPECT_FALSE(dataWithUncompressedContentsOfFile(folder_.Write("a.gz", "plain text")));
  const auto half = stream_.view().substr(0, stream_.size() / 2);
  EXPECT_FALSE(dataWithUncompressedContentsOfFile(folder_.Write("b.gz", half)));
}

TEST_F(UncompressedContents, OfAnEmptyFileAreAnEmptyBuffer) {
  for (const char* name : {"a.xml", "a.gz"}) {
    const ByteBuffer bytes = dataWithUncompressedContentsOfFile(folder_.Write(name, ""));
    EXPECT_TRUE(bytes) << name;
    EXPECT_EQ(bytes.size(), 0u) << name;
  }
}

TEST_F(UncompressedContents, OfAFileThatCannotBeReadAreNone) {
  EXPECT_FALSE(dataWithUncompressedContentsOfFile(folder_.PathOf("missing.gz")));
  EXPECT_FALSE(dataWithUncompressedContentsOfFile(folder_.PathOf("missing")));
  EXPECT_FALSE(dataWithUncompressedContentsOfFile(folder_.path()));
  EXPECT_FALSE(dataWithUncompressedContentsOfFile(""));
}
