// The codec beside the gzip program.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "codecs/Gzip.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TemporaryFolder.h"

using tavrel::system::ByteBuffer;
using tavrel::test::Rounds;

namespace {

class GzipProgram : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(Run("gzip --version > version")) << "there is no gzip program";
  }

  // Runs a command of the shell inside the test's folder.
  [[nodiscard]] bool Run(const std::string& command) const {
    std::string line = "cd '";
    line.append(folder_.path()).append("' && ").append(command).append(" 2> messages");
    return std::system(line.c_str()) == 0;  // NOLINT(concurrency-mt-unsafe)
  }

  [[nodiscard]] std::string Contents(std::string_view name) const {
    std::ifstream file(folder_.PathOf(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  static std::string TextOfRound(int round) {
    tavrel::test::Random random(static_cast<std::uint64_t>(round));
    const std::size_t size = 1 + random.Below(round < 10 ? 100 : 2000000);
    if (round % 3 == 0) return random.Bytes(size);
    return random.Text({"<dict>", "</dict>", "\n\t", "abc", "x", "ü"}, size / 4 + 1);
  }

  tavrel::test::TemporaryFolder folder_;
};

}  // namespace

TEST_F(GzipProgram, ReadsWhatWeDeflate) {
  for (int round = 0; round < Rounds(20); ++round) {
    const std::string text = TextOfRound(round);
    folder_.Write("text.gz", tavrel::gzipDeflate(ByteBuffer::Copy(text)).view());
    ASSERT_TRUE(Run("gzip -t text.gz && gzip -dc text.gz > text")) << Contents("messages");
    ASSERT_TRUE(Contents("text") == text) << round;
  }
}

TEST_F(GzipProgram, WritesWhatWeInflate) {
  for (int round = 0; round < Rounds(20); ++round) {
    const std::string text = TextOfRound(round);
    const std::string path = folder_.Write("text", text);
    const char* command = round % 2 == 0 ? "gzip -1f text" : "gzip -9nf text";
    ASSERT_TRUE(Run(command)) << Contents("messages");
    ASSERT_TRUE(tavrel::dataWithUncompressedContentsOfFile(path + ".gz").view() == text) << round;
  }
}
