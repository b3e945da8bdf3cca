// Pictures as independent decoders see them.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::test {

struct DecodedPicture {
  unsigned width = 0;
  unsigned height = 0;
  std::vector<std::array<unsigned char, 4>> pixels;  // red, green, blue, alpha; rows from the top
};

// By libpng or libjpeg, as the first bytes say; none when it cannot be decoded to its end without a
// warning.
[[nodiscard]] std::optional<DecodedPicture> Decode(std::string_view bytes);

}  // namespace tavrel::test
