// What the texts of a library file's fields mean.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tavrel::host {

// A whole number, and nothing else. None for an empty text.
[[nodiscard]] std::optional<std::int64_t> NumberIn(std::string_view text) noexcept;

// Whether it is of the form "2009-11-05T08:13:42Z".
[[nodiscard]] bool IsDate(std::string_view text) noexcept;

}  // namespace tavrel::host
