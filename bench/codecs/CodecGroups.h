// What the program `codecs` measures. Each function checks results first and throws when they
// differ.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "bench/codecs/Measuring.h"

namespace tavrel::bench {

// On that many random bytes.
std::vector<Target> MeasureBase64(std::size_t size, std::uint32_t rounds);

// On the bytes of a file, which gzip programs read and write in a temporary folder.
std::vector<Target> MeasureGzip(std::string_view contents, std::uint32_t rounds);

}  // namespace tavrel::bench
