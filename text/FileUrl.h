// URLs, as far as the library needs them: file URLs of paths and back, and the paths of the
// locations in library files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavrel::text {

// Whether the scheme is "file", in any case: of this machine or of another.
[[nodiscard]] bool IsFileUrl(std::string_view url) noexcept;

// The other three may throw std::bad_alloc.

// The file URL of an absolute path. Every byte survives, valid UTF-8 or not.
[[nodiscard]] std::string FileUrlOfPath(const std::string& path);

// The path of a "file:" URL of this machine (no host, or "localhost"), byte for byte; none for any
// other URL.
[[nodiscard]] std::optional<std::string> PathOfFileUrl(std::string_view url);

// The decoded path of a URL of any scheme, or of none; none when it is malformed: a character
// outside the set of RFC 2396, a '%' without two hexadecimal digits, a second '#', or a path whose
// escapes decode to a NUL or to invalid UTF-8. One '/' at the path's end is dropped; an empty path
// is a path.
[[nodiscard]] std::optional<std::string> PathOfUrl(std::string_view url);

}  // namespace tavrel::text
