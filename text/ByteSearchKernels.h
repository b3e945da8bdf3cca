// What the functions that search bytes have in common, and these functions.
#pragma once

#include <cstring>

#include "text/ByteSearch.h"

namespace tavrel::text {

FoundBytes FindPlain(const BytePattern& pattern, const char* from, const char* end,
                     SearchEffort& effort) noexcept;
FoundBytes FindAvx2(const BytePattern& pattern, const char* from, const char* end,
                    SearchEffort& effort) noexcept;

inline bool StandsAt(const BytePattern& pattern, const char* at, SearchEffort& effort) noexcept {
  effort.compared += pattern.bytes.size();
  return std::memcmp(at, pattern.bytes.data(), pattern.bytes.size()) == 0;
}

}  // namespace tavrel::text
