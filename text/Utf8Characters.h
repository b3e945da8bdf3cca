// The UTF-8 rule, from character to character: what the checks of whole blocks must equal.
#pragma once

#include <cstddef>

namespace tavrel::text {

// As ValidUtf8Prefix() (text/Utf8.h).
[[nodiscard]] std::size_t ValidUtf8Characters(const char* text, std::size_t length) noexcept;

}  // namespace tavrel::text
