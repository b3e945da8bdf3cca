// What failures may leave of a song: each text and each number is there, or it is missing.
#pragma once

#include <cstdint>

#include "tests/support/Survey.h"

namespace tavrel::test {

[[nodiscard]] bool IsPart(const SeenText& part, const SeenText& whole);
[[nodiscard]] bool IsPart(std::int32_t part, std::int32_t whole);
[[nodiscard]] bool IsPart(const SeenSong& part, const SeenSong& whole);

}  // namespace tavrel::test
