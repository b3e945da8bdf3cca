// A text longer than 32 bits can count.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

#include "tests/support/Sanitizers.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/xml/TreeText.h"
#include "xml/TreeBuilder.h"

namespace {

constexpr std::size_t kPattern = std::size_t{1} << 20;
constexpr std::size_t kPatterns = 4097;

// One file of a single letter, mapped again and again: a long text in little memory.
class LongText {
 public:
  LongText() {
    const int file = open(folder_.Write("letters", std::string(kPattern, 'x')).c_str(), O_RDONLY);
    void* start = mmap(nullptr, kBytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (start == MAP_FAILED) return;
    text_ = static_cast<char*>(start);
    for (std::size_t i = 0; i < kPatterns; ++i) {
      constexpr int kFlags = MAP_PRIVATE | MAP_FIXED;
      mmap(text_ + i * kPattern, kPattern, PROT_READ | PROT_WRITE, kFlags, file, 0);
    }
    close(file);
  }
  LongText(const LongText&) = delete;
  LongText& operator=(const LongText&) = delete;
  ~LongText() {
    if (text_ != nullptr) munmap(text_, kBytes);
  }

  [[nodiscard]] char* text() const { return text_; }

  static constexpr std::size_t kBytes = kPattern * kPatterns;

 private:
  tavrel::test::TemporaryFolder folder_;
  char* text_ = nullptr;
};

// A parser that loses its way in the text hands out records without end: they may not take more than
// this.
class MemoryLimit {
 public:
  explicit MemoryLimit(rlim_t bytes) {
    getrlimit(RLIMIT_AS, &former_);
    const rlimit limit = {std::min(bytes, former_.rlim_max), former_.rlim_max};
    setrlimit(RLIMIT_AS, &limit);
  }
  MemoryLimit(const MemoryLimit&) = delete;
  MemoryLimit& operator=(const MemoryLimit&) = delete;
  ~MemoryLimit() { setrlimit(RLIMIT_AS, &former_); }

 private:
  rlimit former_{};
};

}  // namespace

TEST(HugeText, IsParsedBeyondFourGigabytes) {
  const MemoryLimit limit(rlim_t{6} << 30);
  const LongText huge;
  ASSERT_NE(huge.text(), nullptr) << "the address space is too small";
  const std::string ending = "<a>1</a><b>2</b><c/></r><k>v</k><k>v</k>";
  char* end = huge.text() + LongText::kBytes - 1;
  std::memcpy(huge.text(), "<r>", 3);
  std::memcpy(end - ending.size(), ending.c_str(), ending.size() + 1);

  tavrel::xml::DocumentTree tree;
  tavrel::xml::TreeBuilder(tree, huge.text(), end).BuildIndexed(tavrel::system::WidestSet());
  const auto elements = tavrel::test::ElementsOf(tree.fields);
  ASSERT_EQ(elements.size(), 6u);
  const TBXMLElement* root = elements[0];
  EXPECT_STREQ(root->name, "r");
  EXPECT_EQ(root->text, nullptr);
  EXPECT_EQ(tavrel::test::TreeOf(root->firstChild), "a'1'");
  EXPECT_EQ(tavrel::test::TreeOf(root->firstChild->nextSibling), "b'2'");
  EXPECT_EQ(tavrel::test::TreeOf(root->currentChild), "c");
}
