// The pass once more, slow and plain: each rule is a step, and each marker is taken out by moving
// all that is behind it. The tests hold the real pass against it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::test {

inline constexpr std::size_t kNone = std::string::npos;

// Strings are offsets into the bytes, records are indexes; kNone stands for none.
struct LiteralAttribute {
  std::size_t name = kNone;
  std::size_t value = kNone;
};

struct LiteralElement {
  std::size_t name = kNone;
  std::size_t text = kNone;
  std::vector<LiteralAttribute> attributes;
  std::size_t parentElement = kNone;
  std::size_t firstChild = kNone;
  std::size_t currentChild = kNone;
  std::size_t nextSibling = kNone;
  std::size_t previousSibling = kNone;
};

class LiteralPass {
 public:
  explicit LiteralPass(std::string_view text);

  // The text after the pass, with the zero byte behind it.
  [[nodiscard]] const std::string& bytes() const { return bytes_; }
  // Whether a byte means something. Behind the end of a value that became shorter, none does.
  [[nodiscard]] bool IsInUse(std::size_t at) const { return inUse_[at]; }
  // In the order in which their records are handed out.
  [[nodiscard]] const std::vector<LiteralElement>& elements() const { return elements_; }

 private:
  void Run();
  [[nodiscard]] bool TakeSection(std::size_t open);
  [[nodiscard]] std::size_t TagEnd(std::size_t open) const;
  void CloseElement();
  void OpenElement(std::size_t open, std::size_t close);
  void ScanAttributes(LiteralElement& element, std::size_t from, std::size_t to);
  void RemoveMarkers(std::size_t value);

  // Searches, which stop at the first zero byte.
  [[nodiscard]] std::size_t Find(std::string_view what, std::size_t from) const;
  [[nodiscard]] std::size_t FindAnyOf(std::string_view bytes, std::size_t from) const;
  [[nodiscard]] bool Begins(std::size_t at, std::string_view what) const;
  // Moves `count` bytes that start at `from` to the left by `distance`.
  void MoveLeft(std::size_t from, std::size_t count, std::size_t distance);

  std::string bytes_;
  std::vector<bool> inUse_;
  std::vector<LiteralElement> elements_;
  std::size_t position_ = 0;
  std::size_t open_ = kNone;  // the open element
};

}  // namespace tavrel::test
