// Pictures made smaller, never larger.
#pragma once

#include <cstdint>

#include "host/artwork/Artwork.h"
#include "host/artwork/Pixels.h"

namespace tavrel::host {

// A PNG or JPEG file of the same kind whose longer side has at most `longestSide` pixels, which is positive;
// the file itself where it has no more. One that cannot be decoded is a Failure, which says why, and so is
// one of more than kMostPixels.
// Cost: linear in the pixels; memory for four bytes each, and for those of a JPEG as few as will do.
[[nodiscard]] Picture Scaled(Picture picture, std::int32_t longestSide);

// The same as pixels, for those who put several into one picture.
[[nodiscard]] Pixels ScaledPixels(const Picture& picture, std::int32_t longestSide);

}  // namespace tavrel::host
