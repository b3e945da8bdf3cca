// PNG and JPEG files, as far as this program needs to know them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavrel::host {

// Whether a file of that kind stands there from its first part to its last. What is inside the
// parts is not looked at; bytes behind the end are allowed.
[[nodiscard]] bool IsWholePng(std::string_view bytes);
[[nodiscard]] bool IsWholeJpeg(std::string_view bytes);

enum class PixelOrder { Argb, Bgra };

// A PNG of raw pixels of 4 bytes, rows from the top; bytes behind them are ignored. None when there
// are too few, or when the sizes are not those of a picture.
[[nodiscard]] std::optional<std::string> PngOfPixels(std::string_view pixels, std::int32_t width,
                                                     std::int32_t height, PixelOrder order);

}  // namespace tavrel::host
