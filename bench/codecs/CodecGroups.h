// What the program `codecs` measures. Each function checks results first and throws when they
// differ.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "bench/report/Report.h"

namespace tavrel::bench {

// On that many random bytes.
void MeasureBase64(std::size_t size, std::uint32_t rounds, Report& report);

// On the bytes of a file, which gzip programs read and write in a temporary folder.
void MeasureGzip(std::string_view contents, std::uint32_t rounds, Report& report);

}  // namespace tavrel::bench
