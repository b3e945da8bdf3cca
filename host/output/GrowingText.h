// A text that is put together of many short pieces, which std::string takes a call for each of.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace tavrel::host {

class GrowingText {
 public:
  // Room for that many bytes behind the text, valid until the next call.
  [[nodiscard]] char* RoomFor(std::size_t bytes) {
    if (static_cast<std::size_t>(limit_ - end_) < bytes) Grow(bytes);
    return end_;
  }
  // Takes what was written into the room, up to there.
  void EndAt(char* end) noexcept { end_ = end; }

  void Append(std::string_view text) { EndAt(Copy(text, RoomFor(text.size()))); }
  void Clear() noexcept { end_ = room_.get(); }

  [[nodiscard]] std::size_t Size() const noexcept {
    return static_cast<std::size_t>(end_ - room_.get());
  }
  [[nodiscard]] std::string_view View() const noexcept { return {room_.get(), Size()}; }
  // What begins there.
  [[nodiscard]] const char* At(std::size_t place) const noexcept { return room_.get() + place; }

  // Copies the text to where there is room for it. Result: its end there.
  static char* Copy(std::string_view text, char* target) noexcept {
    if (!text.empty()) std::memcpy(target, text.data(), text.size());
    return target + text.size();
  }

 private:
  void Grow(std::size_t bytes);

  std::unique_ptr<char[]> room_;
  char* end_ = nullptr;
  char* limit_ = nullptr;
};

}  // namespace tavrel::host
