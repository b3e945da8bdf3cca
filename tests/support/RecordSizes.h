// What the sizes that the queries answer begin with: that of the record, which pointers make larger.
#pragma once

#include <cstdint>

namespace tavrel::test {

inline constexpr bool kPointersHave8Bytes = sizeof(void*) == 8;
inline constexpr std::int32_t kSongInfoSize = kPointersHave8Bytes ? 96 : 60;
inline constexpr std::int32_t kArtworkInfoSize = kPointersHave8Bytes ? 32 : 20;

}  // namespace tavrel::test
