// The user's home folder.
#pragma once

#include <optional>
#include <string>

namespace tavrel::system {

// $HOME when it is an absolute path (and may be followed: system/Environment.h), else the folder of the
// user's entry in the password database; none when neither names one. Any bytes are allowed in it. May
// throw std::bad_alloc.
[[nodiscard]] std::optional<std::string> HomeFolder();

}  // namespace tavrel::system
