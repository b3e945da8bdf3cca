#include "text/TextFile.h"

#include <algorithm>

#include "system/Files.h"
#include "text/Utf8.h"

namespace tavrel::text {
namespace {

// Small enough to stay in the second-level cache until it is checked; with smaller ones the calls
// begin to count.
constexpr std::size_t kPiece = std::size_t{128} << 10;

// Follows a text that arrives in pieces, some of which end inside a character.
class TextProgress {
 public:
  // Whether the first `length` bytes may still become valid text.
  bool Accepts(const char* text, std::size_t length) noexcept {
    const TextPrefix prefix = ValidTextPrefix(text + valid_, length - valid_);
    if (lengthToZero_ == valid_) lengthToZero_ += prefix.lengthToZero;
    valid_ += prefix.length;
    return length - valid_ < 4;  // at most the start of one character is open
  }
  [[nodiscard]] std::size_t valid() const noexcept { return valid_; }
  [[nodiscard]] std::size_t lengthToZero() const noexcept { return lengthToZero_; }

 private:
  std::size_t valid_ = 0;
  std::size_t lengthToZero_ = 0;
};

}  // namespace

FileText ReadFileText(const char* path) noexcept {
  std::size_t size = 0;
  const system::FileDescriptor file = system::OpenRegularFile(path, size);
  if (!file) return {};
  FileText text{system::AllocateBlock(size + 1)};
  if (text.block.address == nullptr) return {};
  if (ReadText(file.get(), size, text)) return text;
  system::ReleaseBlock(text.block);
  return {};
}

bool ReadText(int descriptor, std::size_t size, FileText& text) noexcept {
  TextProgress progress;
  text.length = 0;
  while (text.length < size) {
    const std::size_t wanted = std::min(kPiece, size - text.length);
    const std::ptrdiff_t got =
        system::ReadFully(descriptor, text.block.address + text.length, wanted);
    if (got < 0) return false;
    if (got == 0) break;  // the file has become shorter
    text.length += static_cast<std::size_t>(got);
    if (!progress.Accepts(text.block.address, text.length)) return false;
  }
  text.lengthToZero = progress.lengthToZero();
  return progress.valid() == text.length;
}

}  // namespace tavrel::text
