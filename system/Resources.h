// The application's own resource files: a folder that is searched by base name and extension.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavrel::system {

// Sets the folder for the whole process; a path too long for the system counts as not set. Until it
// is set, the folder is "resources" beside the executable.
void SetResourceFolder(std::string_view folder) noexcept;

// The path of the resource `baseName`.`extension`, of `baseName` alone when `extension` is empty;
// none when there is no such file. May throw std::bad_alloc.
[[nodiscard]] std::optional<std::string> PathForResource(std::string_view baseName,
                                                         std::string_view extension);

}  // namespace tavrel::system
