// The codec beside the base64 program.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/codecs/Base64Calls.h"

using tavrel::test::Decoded;
using tavrel::test::Encoded;

namespace {

// Of the lengths, where every step takes many times longer.
constexpr std::size_t kRoundStride = tavrel::test::kSlow ? 7 : 1;

class Base64Program : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(Run("base64 --version > version") &&
                Contents("version").find("GNU") != std::string::npos)
        << "there is no base64 program of the GNU kind";
  }

  // Runs a command of the shell inside the test's folder.
  [[nodiscard]] bool Run(const std::string& command) const {
    const std::string line = "cd '" + folder_.path() + "' && " + command + " 2> messages";
    return std::system(line.c_str()) == 0;  // NOLINT(concurrency-mt-unsafe)
  }

  [[nodiscard]] std::string Contents(std::string_view name) const {
    std::ifstream file(folder_.PathOf(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  // What the program writes for the file "bytes".
  [[nodiscard]] std::string EncodedByProgram(std::size_t lineLength) const {
    EXPECT_TRUE(Run("base64 -w " + std::to_string(lineLength) + " bytes > text"))
        << Contents("messages");
    std::string text = Contents("text");
    // The program also ends a line that is not full.
    const std::size_t lastLine = text.size() < 2 ? 0 : text.rfind('\n', text.size() - 2) + 1;
    if (lineLength > 0 && text.size() - lastLine < lineLength + 1) text.pop_back();
    return text;
  }

  static std::string BytesOfRound(std::size_t round) {
    tavrel::test::Random random(round);
    return random.Bytes(round <= 20 ? round + 1 : random.Below(round == 21 ? 1000000 : 50000) + 1);
  }

  tavrel::test::TemporaryFolder folder_;
};

}  // namespace

TEST_F(Base64Program, EncodesAsWeDo) {
  for (std::size_t round = 0; round < 40; round += kRoundStride) {
    const std::string bytes = BytesOfRound(round);
    folder_.Write("bytes", bytes);
    for (const std::uint32_t lineLength : {0U, 4U, 64U, 76U, 1000U, 32764U}) {
      if (lineLength < 64 && bytes.size() > 1000) continue;
      ASSERT_TRUE(Encoded(bytes, lineLength) == EncodedByProgram(lineLength))
          << bytes.size() << " bytes in lines of " << lineLength;
    }
  }
}

TEST_F(Base64Program, ReadsWhatWeEncode) {
  for (std::size_t round = 0; round < 30; round += kRoundStride) {
    const std::string bytes = BytesOfRound(round);
    folder_.Write("text", Encoded(bytes, round % 2 == 0 ? 0 : 76));
    ASSERT_TRUE(Run("base64 -d text > bytes")) << Contents("messages");
    ASSERT_TRUE(Contents("bytes") == bytes) << round;
  }
}

TEST_F(Base64Program, SkipsTheSameCharactersAsWeDo) {
  tavrel::test::Random random(7);
  for (std::size_t round = 0; round < 30; round += kRoundStride) {
    const std::string clean = Encoded(BytesOfRound(round));
    std::string text;
    for (const char character : clean) {
      text += character;
      if (random.Below(20) == 0) text += "\n\r\t !\"#$%&-_~,.:;<>?@[]^`{|}"[random.Below(28)];
    }
    folder_.Write("text", text);
    ASSERT_TRUE(Run("base64 -di text > bytes")) << Contents("messages");
    ASSERT_TRUE(Decoded(text) == Contents("bytes")) << round;
  }
}
