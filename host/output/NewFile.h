// Files that are complete or absent, whatever happens while they are written.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::host {

enum class IfThere { Keep, Replace };

// Writes a file: under a temporary name in the same folder first, which then becomes `path` in one
// step. False, with nothing changed, when there is something of that name and it is to be kept,
// also when it has come only meanwhile. What cannot be written is a Failure.
[[nodiscard]] bool WriteNewFile(const std::string& path, std::string_view bytes, IfThere ifThere);

}  // namespace tavrel::host
