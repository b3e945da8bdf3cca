// Whether a text is nothing but ASCII characters that are seen and stand for themselves: nearly all texts are, and
// are written as they stand.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tavrel::host {

// Whether every byte is from 0x20 to 0x7E and neither of the two. Cost: a step for eight bytes.
template <char kOne, char kOther>
[[nodiscard]] bool IsPlainAsciiWithout(std::string_view text) noexcept {
  using Block = std::uint64_t;
  constexpr auto each = [](unsigned char byte) { return Block{0x0101010101010101u} * byte; };
  // The highest bit of some byte is set where one is not plain, and only there: what a byte hands on to the next
  // one, as a carry, it hands on only when its own is set.
  constexpr auto isPlain = [=](Block block) {
    const Block one = (block ^ each(static_cast<unsigned char>(kOne))) - each(1);
    const Block other = (block ^ each(static_cast<unsigned char>(kOther))) - each(1);
    const Block found = block | (block + each(1)) | (block - each(0x20)) | one | other;
    return (found & each(0x80)) == 0;
  };
  const char* const start = text.data();
  if (text.size() < sizeof(Block)) {
    Block block = each(' ');
    if (!text.empty()) std::memcpy(&block, start, text.size());  // an empty text may stand nowhere
    return isPlain(block);
  }
  const auto load = [](const char* at) {
    Block block;
    std::memcpy(&block, at, sizeof block);
    return block;
  };
  const char* const last = start + text.size() - sizeof(Block);
  for (const char* at = start; at < last; at += sizeof(Block)) {
    if (!isPlain(load(at))) return false;
  }
  return isPlain(load(last));
}

}  // namespace tavrel::host
