#include "text/TextFolding.h"

#include <utf8proc.h>

#include <algorithm>

#include "text/Ascii.h"
#include "text/CombiningMarks.h"
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

// Takes a text character by character and writes it character by character: each with the marks
// that follow it.
class Folder {
 public:
  Folder(const FoldingTarget& target, std::size_t at) noexcept
      : target_(target), start_(at), at_(at) {}

  // All three: false when memory is exhausted.
  [[nodiscard]] bool Take(CodePoint point) noexcept;
  // Nothing that follows combines with an ASCII character but marks.
  [[nodiscard]] bool TakeAscii(std::string_view characters) noexcept;
  [[nodiscard]] bool Finish() noexcept { return WriteMarks(); }
  [[nodiscard]] std::size_t at() const noexcept { return at_; }

 private:
  [[nodiscard]] bool TakePart(CodePoint point) noexcept;
  [[nodiscard]] bool WriteMarks() noexcept;
  void WriteFolded(CodePoint point, bool joined) noexcept;

  FoldingTarget target_;
  std::size_t start_;
  std::size_t at_;
  CombiningMarks marks_;    // read, but not yet written
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
  for (const CombiningMark& mark : marks_) WriteFolded(mark.point, true);
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
  for (std::size_t i = 0; i < text.size(); ++i) target[i] = ToLowerCase(text[i]);
}

bool Folder::TakeAscii(std::string_view characters) noexcept {
  if (!WriteMarks()) return false;
  FoldAscii(characters, target_.bytes + at_);
  at_ += characters.size();
  composed_ = 0;
  return true;
}

struct Character {
  CodePoint point;
  std::size_t length;  // in bytes
};

// The first character of a text that is valid and not empty.
Character FirstCharacter(std::string_view text) noexcept {
  Character first{};
  const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
  const utf8proc_ssize_t length =
      utf8proc_iterate(bytes, static_cast<utf8proc_ssize_t>(text.size()), &first.point);
  first.length = static_cast<std::size_t>(std::max<utf8proc_ssize_t>(length, 1));
  return first;
}

}  // namespace

std::optional<std::size_t> FoldText(std::string_view text, const FoldingTarget& target,
                                    std::size_t at) noexcept {
  if (IsAscii(text)) {
    FoldAscii(text, target.bytes + at);
    return text.size();
  }
  if (!IsValidUtf8(text)) return 0;

  Folder folder(target, at);
  while (!text.empty()) {
    if (const std::size_t ascii = AsciiPrefixLength(text); ascii > 0) {
      if (!folder.TakeAscii(text.substr(0, ascii))) return std::nullopt;
      text.remove_prefix(ascii);
    } else {
      const Character character = FirstCharacter(text);
      if (!folder.Take(character.point)) return std::nullopt;
      text.remove_prefix(character.length);
    }
  }
  if (!folder.Finish()) return std::nullopt;
  return folder.at() - at;
}

}  // namespace tavrel::text
