// What a file is that is taken for a library file.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tavrel::host {

// How much of a file's start is looked at.
inline constexpr std::size_t kFormatBytes = 4096;

struct FileFormat {
  std::string what;  // a sentence
  std::string help;  // lines, each behind a line end and two blanks; empty when nothing helps
};

// What the file's first bytes give away; none when they look like XML text, or like nothing that is known.
// path: the file, as the user named it, for the commands that help.
[[nodiscard]] std::optional<FileFormat> KnownFormat(std::string_view start,
                                                    const std::string& path);

// The name of the first element in the text; empty when none begins in it.
[[nodiscard]] std::string_view FirstElement(std::string_view start);

// Whether the file's last bytes hold the end of a property list, or cannot be read. Cost: reads 64 KiB at
// most.
[[nodiscard]] bool EndsLikePropertyList(const std::string& file);

}  // namespace tavrel::host
