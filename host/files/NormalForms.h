// Paths in the forms that file systems keep names in: accents composed with their letters (NFC), as most
// do, or apart (NFD), as those of older Macs do.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tavrel::host {

// No file system takes longer names, in bytes; what is longer names no file, and stays as it is.
inline constexpr std::size_t kLongestName = 1024;

// Name by name; one that is not UTF-8 stays as it is. Cost: linear in the path's length.
[[nodiscard]] std::string ComposedPath(std::string_view path);
[[nodiscard]] std::string DecomposedPath(std::string_view path);

// A name as it compares where neither case nor form counts.
[[nodiscard]] std::string AlikeName(std::string_view name);

}  // namespace tavrel::host
