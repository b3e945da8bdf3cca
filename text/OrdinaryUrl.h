// The paths of ordinary file URLs, which are nearly all locations in library files, in one pass and
// without memory of its own. PathOfUrl() is the plain form, for every URL there is.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace tavrel::text {

// Writes the path that PathOfUrl() gives for `url`, without a terminator.
// path:   room for url.size() bytes, apart from those of `url`; what is written there without a
//         result means nothing.
// Result: the length of the path; none when the URL is not ordinary, malformed or not: it does not
//         begin with "file://localhost/" or "file:///", has a query or a fragment, or its path
//         holds anything but what may stand in one and escapes of non-zero bytes that are UTF-8.
[[nodiscard]] std::optional<std::size_t> PathOfOrdinaryUrl(const char* url, char* path) noexcept;

// The same for a URL whose folder is known: writes what is behind it.
// name:   the end of the URL, behind a '/' of its path.
// path:   begins with the path up to there, '/' included, as PathOfOrdinaryUrl() writes it, and has room for the rest.
// folder: the length of that beginning.
// Result: as that of PathOfOrdinaryUrl() for the whole URL.
[[nodiscard]] std::optional<std::size_t> PathOfOrdinaryName(const char* name, char* path,
                                                            std::size_t folder) noexcept;

}  // namespace tavrel::text
