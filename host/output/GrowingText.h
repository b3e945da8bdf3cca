// A text that is put together of many short pieces, which std::string takes a call for each of.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <vector>

namespace tavrel::host {

class GrowingText {
 public:
  // Room for that many bytes behind the text, valid until the next call.
  [[nodiscard]] char* RoomFor(std::size_t bytes) {
    if (room_.size() - size_ < bytes) room_.resize(std::max(2 * room_.size(), size_ + bytes));
    return room_.data() + size_;
  }
  // Takes what was written into the room, up to there.
  void EndAt(const char* end) noexcept { size_ = static_cast<std::size_t>(end - room_.data()); }

  void Append(std::string_view text) { EndAt(Copy(text, RoomFor(text.size()))); }
  void Clear() noexcept { size_ = 0; }

  [[nodiscard]] std::size_t Size() const noexcept { return size_; }
  [[nodiscard]] std::string_view View() const noexcept { return {room_.data(), size_}; }
  // Of what begins there.
  [[nodiscard]] const char* At(std::size_t place) const noexcept { return room_.data() + place; }

  // Copies the text to where there is room for it. Result: its end there.
  static char* Copy(std::string_view text, char* target) noexcept {
    if (!text.empty()) std::memcpy(target, text.data(), text.size());
    return target + text.size();
  }

 private:
  std::vector<char> room_;
  std::size_t size_ = 0;
};

}  // namespace tavrel::host
