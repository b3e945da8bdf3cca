#include "text/TextFolding.h"

#include <utf8proc.h>

#include <algorithm>
#include <limits>

#include "system/Memory.h"
#include "text/Ascii.h"
#include "text/Utf8.h"

namespace tavrel::text {
namespace {

using CodePoint = utf8proc_int32_t;

constexpr int kMostParts = 8;  // more than any character decomposes or folds to

struct Parts {
  CodePoint points[kMostParts];
  int count;
};

Parts Decompose(CodePoint point, int options) noexcept {
  Parts parts;
  int unused = 0;
  const auto all = static_cast<utf8proc_option_t>(UTF8PROC_DECOMPOSE | options);
  const utf8proc_ssize_t count =
      utf8proc_decompose_char(point, parts.points, kMostParts, all, &unused);
  parts.count = static_cast<int>(std::clamp<utf8proc_ssize_t>(count, 0, kMostParts));
  return parts;
}

std::uint8_t CombiningClass(CodePoint point) noexcept {
  return static_cast<std::uint8_t>(utf8proc_get_property(point)->combining_class);
}

// Tibetan consonants with a subjoined letter: characters that decompose to two of class 0 but are
// never composed again, so that utf8proc does not tell that the two belong together.
bool IsTibetanPair(CodePoint first, CodePoint second) noexcept {
  constexpr CodePoint kWithHa[] = {0xF42, 0xF4C, 0xF51, 0xF56, 0xF5B,
                                   0xF92, 0xF9C, 0xFA1, 0xFA6, 0xFAB};
  if (second == 0xFB5) return first == 0xF40 || first == 0xF90;
  return second == 0xFB7 &&
         std::find(std::begin(kWithHa), std::end(kWithHa), first) != std::end(kWithHa);
}

// The character that two code points of combining class 0 compose to; 0 when they stay apart.
CodePoint Compose(CodePoint first, CodePoint second) noexcept {
  constexpr CodePoint kFirstThatFollows = 0x9BE;  // Bengali; nothing below composes with a starter
  if (second < kFirstThatFollows || first == 0) return 0;
  if (IsTibetanPair(first, second)) return second;  // nothing composes with these any further
  CodePoint pair[] = {first, second};
  return utf8proc_normalize_utf32(pair, 2, UTF8PROC_COMPOSE) == 1 ? pair[0] : 0;
}

struct Mark {
  CodePoint point;
  std::uint8_t combiningClass;
};

// The combining marks behind a character, as many as there are.
class Marks {
 public:
  Marks() noexcept = default;
  Marks(const Marks&) = delete;
  Marks& operator=(const Marks&) = delete;
  ~Marks() { system::Release(block_); }

  [[nodiscard]] bool Append(Mark mark) noexcept {
    if (count_ == capacity_ && !Grow()) return false;
    marks_[count_++] = mark;
    return true;
  }

  // Puts the marks into their canonical order: by combining class, equal ones as they stand. Linear
  // also for megabytes of marks. False when memory is exhausted.
  [[nodiscard]] bool Order() noexcept;

  void Clear() noexcept { count_ = 0; }
  [[nodiscard]] std::size_t size() const noexcept { return count_; }
  [[nodiscard]] const Mark* begin() const noexcept { return marks_; }
  [[nodiscard]] const Mark* end() const noexcept { return marks_ + count_; }

 private:
  static constexpr std::size_t kFew = 64;

  bool Grow() noexcept;
  void OrderFew() noexcept;

  Mark few_[kFew];
  Mark* marks_ = few_;
  void* block_ = nullptr;  // none while the few suffice
  std::size_t count_ = 0;
  std::size_t capacity_ = kFew;
};

bool Marks::Grow() noexcept {
  void* grown = system::Reallocate(block_, 2 * capacity_ * sizeof(Mark));
  if (grown == nullptr) return false;
  auto* marks = static_cast<Mark*>(grown);
  if (block_ == nullptr) std::copy(begin(), end(), marks);
  marks_ = marks;
  block_ = grown;
  capacity_ *= 2;
  return true;
}

void Marks::OrderFew() noexcept {
  for (std::size_t i = 1; i < count_; ++i) {
    const Mark mark = marks_[i];
    std::size_t at = i;
    for (; at > 0 && marks_[at - 1].combiningClass > mark.combiningClass; --at) {
      marks_[at] = marks_[at - 1];
    }
    marks_[at] = mark;
  }
}

bool Marks::Order() noexcept {
  if (count_ <= kFew) {
    OrderFew();
    return true;
  }
  auto* ordered = static_cast<Mark*>(system::Allocate(capacity_ * sizeof(Mark)));
  if (ordered == nullptr) return false;
  constexpr std::size_t kClasses = std::size_t{std::numeric_limits<std::uint8_t>::max()} + 1;
  std::size_t places[kClasses + 1] = {};  // where the next mark of a class goes
  for (const Mark& mark : *this) ++places[mark.combiningClass + 1u];
  for (std::size_t i = 1; i <= kClasses; ++i) places[i] += places[i - 1];
  for (const Mark& mark : *this) ordered[places[mark.combiningClass]++] = mark;
  system::Release(block_);
  block_ = ordered;
  marks_ = ordered;
  return true;
}

// Takes a text character by character and writes it character by character: each with the marks
// that follow it.
class Folder {
 public:
  Folder(const FoldingTarget& target, std::size_t at) noexcept
      : target_(target), start_(at), at_(at) {}

  [[nodiscard]] bool Take(CodePoint point) noexcept;
  // Nothing that follows combines with an ASCII character but marks.
  void TakeAscii(std::string_view characters) noexcept;
  [[nodiscard]] bool Finish() noexcept { return WriteMarks(); }
  [[nodiscard]] std::size_t at() const noexcept { return at_; }

 private:
  [[nodiscard]] bool TakePart(CodePoint point) noexcept;
  [[nodiscard]] bool WriteMarks() noexcept;
  void WriteFolded(CodePoint point, bool joined) noexcept;

  FoldingTarget target_;
  std::size_t start_;
  std::size_t at_;
  Marks marks_;             // read, but not yet written
  CodePoint composed_ = 0;  // what the last character has composed to; 0 behind a mark
};

bool Folder::Take(CodePoint point) noexcept {
  const Parts parts = Decompose(point, 0);
  for (int i = 0; i < parts.count; ++i) {
    if (!TakePart(parts.points[i])) return false;
  }
  return true;
}

bool Folder::TakePart(CodePoint point) noexcept {
  const std::uint8_t combiningClass = CombiningClass(point);
  if (combiningClass != 0) {
    composed_ = 0;
    return marks_.Append({point, combiningClass});
  }
  if (!WriteMarks()) return false;
  const CodePoint composed = Compose(composed_, point);
  WriteFolded(point, composed != 0);
  composed_ = composed != 0 ? composed : point;
  return true;
}

bool Folder::WriteMarks() noexcept {
  if (marks_.size() == 0) return true;
  if (!marks_.Order()) return false;
  for (const Mark& mark : marks_) WriteFolded(mark.point, true);
  marks_.Clear();
  return true;
}

// What a code point folds to holds no combining marks, so that the order stays right.
void Folder::WriteFolded(CodePoint point, bool joined) noexcept {
  const Parts parts = Decompose(point, UTF8PROC_CASEFOLD);
  for (int i = 0; i < parts.count; ++i) {
    if (target_.joined != nullptr && (joined || i > 0) && at_ > start_) {
      target_.joined[at_ / 64] |= std::uint64_t{1} << at_ % 64;
    }
    auto* place = reinterpret_cast<utf8proc_uint8_t*>(target_.bytes + at_);
    at_ += static_cast<std::size_t>(utf8proc_encode_char(parts.points[i], place));
  }
}

void FoldAscii(std::string_view text, char* target) noexcept {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    target[i] = static_cast<char>(c + (c >= 'A' && c <= 'Z' ? 'a' - 'A' : 0));
  }
}

void Folder::TakeAscii(std::string_view characters) noexcept {
  FoldAscii(characters, target_.bytes + at_);
  at_ += characters.size();
  composed_ = 0;
}

}  // namespace

std::optional<std::size_t> FoldText(std::string_view text, const FoldingTarget& target,
                                    std::size_t at) noexcept {
  std::size_t ascii = AsciiPrefixLength(text);
  if (ascii == text.size()) {
    FoldAscii(text, target.bytes + at);
    return text.size();
  }
  if (!IsValidUtf8(text)) return 0;

  Folder folder(target, at);
  while (!text.empty()) {
    if (ascii > 0) {
      if (!folder.Finish()) return std::nullopt;
      folder.TakeAscii(text.substr(0, ascii));
      text.remove_prefix(ascii);
    } else {
      CodePoint point = 0;
      const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
      const utf8proc_ssize_t length =
          utf8proc_iterate(bytes, static_cast<utf8proc_ssize_t>(text.size()), &point);
      if (length <= 0) return 0;
      if (!folder.Take(point)) return std::nullopt;
      text.remove_prefix(static_cast<std::size_t>(length));
    }
    ascii = AsciiPrefixLength(text);
  }
  if (!folder.Finish()) return std::nullopt;
  return folder.at() - at;
}

}  // namespace tavrel::text
