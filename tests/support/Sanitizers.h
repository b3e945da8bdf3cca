// How much of a randomised test to run: sanitizers make every step many times slower.
#pragma once

namespace tavrel::test {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer)
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif
#else
inline constexpr bool kSanitized = false;
#endif

[[nodiscard]] constexpr int Rounds(int count) {
  return kSanitized ? count / 8 : count;
}

}  // namespace tavrel::test
